#include "panel/Vantry.h"

#include "host/HostState.h"
#include "panel/Trace.h"

#include <cmath>
#include <limits>

namespace Vantry {

using kirrel::host::Channel;

namespace {
// Counts given as doubles are rounded the way the panel's language converts them.
long long wholeNumber(double v) {
    if (!std::isfinite(v)) return 0;
    if (v > 1e9) return 1000000000;
    if (v < -1e9) return -1000000000;
    return static_cast<long long>(std::nearbyint(v));
}
} // namespace

Vantry_Class::Vantry_Class() : host_(kirrel::host::runningHost()) {}

// --- size and frames -----------------------------------------------------------------------------

short Vantry_Class::Van_BufferWidth() {
    traceCall("Van_BufferWidth");
    return static_cast<short>(host_.bufferWidth());
}
short Vantry_Class::Van_BufferHeight() {
    traceCall("Van_BufferHeight");
    return static_cast<short>(host_.bufferHeight());
}
short Vantry_Class::Van_GetTotalFrames() {
    traceCall("Van_GetTotalFrames");
    return static_cast<short>(host_.totalFrames());
}
int Vantry_Class::Van_GetCurrentFrame() {
    traceCall("Van_GetCurrentFrame");
    return host_.currentFrame();
}
void Vantry_Class::Van_GotoFrame(int frame) {
    traceCall("Van_GotoFrame", frame);
    host_.gotoFrame(frame);
}
void Vantry_Class::Van_InsertFrame(int frame) {
    traceCall("Van_InsertFrame", frame);
    host_.insertFrame(frame);
}
void Vantry_Class::Van_CreateAnim(double count) {
    traceCall("Van_CreateAnim", count);
    host_.createAnim(wholeNumber(count));
}
void Vantry_Class::Van_CreateAnimAdv(int frames, short mode) {
    traceCall("Van_CreateAnimAdv", frames, mode);
    host_.createAnim(frames);
}
void Vantry_Class::Van_NewBuffer(int width, int height) {
    traceCall("Van_NewBuffer", width, height);
    host_.newBuffer(width, height);
}
void Vantry_Class::Van_ShowScrub(int position, int total) {
    traceCall("Van_ShowScrub", position, total);
    host_.showScrub(position, total);
}
void Vantry_Class::Van_StopAnimation() {
    traceCall("Van_StopAnimation");
    host_.stopAnimation();
}
void Vantry_Class::Van_Refresh() {
    traceCall("Van_Refresh");
    host_.refresh();
}
void Vantry_Class::Van_DeleteFrame(int frame) {
    traceCall("Van_DeleteFrame", frame);
    host_.deleteFrame(frame);
}

// --- planes --------------------------------------------------------------------------------------

#define KIRREL_PLANE_GETTER(NAME, EXPR)                                                                      \
    krl::Plane Vantry_Class::NAME() {                                                                        \
        traceCall(#NAME);                                                                                    \
        return EXPR;                                                                                         \
    }
#define KIRREL_PLANE_SETTER(NAME, EXPR)                                                                      \
    void Vantry_Class::NAME(const krl::Plane& p) {                                                           \
        traceCall(#NAME, p);                                                                                 \
        EXPR;                                                                                                \
    }
#define KIRREL_FRAME_GETTER(NAME, EXPR)                                                                      \
    krl::Plane Vantry_Class::NAME(int n) {                                                                   \
        traceCall(#NAME, n);                                                                                 \
        return EXPR;                                                                                         \
    }
#define KIRREL_FRAME_SETTER(NAME, EXPR)                                                                      \
    void Vantry_Class::NAME(const krl::Plane& p, int n) {                                                    \
        traceCall(#NAME, p, n);                                                                              \
        EXPR;                                                                                                \
    }

KIRREL_PLANE_GETTER(Van_GetRBuffer, host_.getBuffer(Channel::R))
KIRREL_PLANE_GETTER(Van_GetGBuffer, host_.getBuffer(Channel::G))
KIRREL_PLANE_GETTER(Van_GetBBuffer, host_.getBuffer(Channel::B))
KIRREL_PLANE_SETTER(Van_SetRbuffer, host_.setBuffer(Channel::R, p))
KIRREL_PLANE_SETTER(Van_SetGbuffer, host_.setBuffer(Channel::G, p))
KIRREL_PLANE_SETTER(Van_SetBbuffer, host_.setBuffer(Channel::B, p))
KIRREL_PLANE_GETTER(Van_GetABuffer, host_.getAlpha())
KIRREL_PLANE_SETTER(Van_SetAbuffer, host_.setAlpha(p))
KIRREL_PLANE_GETTER(Van_GetSwapRBuffer, host_.getSwap(Channel::R))
KIRREL_PLANE_GETTER(Van_GetSwapGBuffer, host_.getSwap(Channel::G))
KIRREL_PLANE_GETTER(Van_GetSwapBBuffer, host_.getSwap(Channel::B))
KIRREL_PLANE_SETTER(Van_SetSwapRBuffer, host_.setSwap(Channel::R, p))
KIRREL_PLANE_SETTER(Van_SetSwapGBuffer, host_.setSwap(Channel::G, p))
KIRREL_PLANE_SETTER(Van_SetSwapBBuffer, host_.setSwap(Channel::B, p))
KIRREL_FRAME_GETTER(Van_GetRFrame, host_.getFrame(Channel::R, n))
KIRREL_FRAME_GETTER(Van_GetGFrame, host_.getFrame(Channel::G, n))
KIRREL_FRAME_GETTER(Van_GetBFrame, host_.getFrame(Channel::B, n))
KIRREL_FRAME_SETTER(Van_SetRFrame, host_.setFrame(Channel::R, p, n))
KIRREL_FRAME_SETTER(Van_SetGFrame, host_.setFrame(Channel::G, p, n))
KIRREL_FRAME_SETTER(Van_SetBFrame, host_.setFrame(Channel::B, p, n))
KIRREL_FRAME_GETTER(Van_GetLayerR, host_.getLayer(Channel::R, n))
KIRREL_FRAME_GETTER(Van_GetLayerG, host_.getLayer(Channel::G, n))
KIRREL_FRAME_GETTER(Van_GetLayerB, host_.getLayer(Channel::B, n))

int Vantry_Class::Van_GetLayerCount() {
    traceCall("Van_GetLayerCount");
    return host_.layerCount();
}
int Vantry_Class::Van_GetCurrentLayer() {
    traceCall("Van_GetCurrentLayer");
    return host_.currentLayer();
}
std::uint8_t Vantry_Class::Van_GetLayerOpacity() {
    traceCall("Van_GetLayerOpacity");
    return static_cast<std::uint8_t>(host_.layerOpacity());
}

// --- colours and alpha display ---------------------------------------------------------------------

int Vantry_Class::Van_getPrimaryColor() {
    traceCall("Van_getPrimaryColor");
    return static_cast<int>(host_.primaryColor());
}
int Vantry_Class::Van_getSecondaryColor() {
    traceCall("Van_getSecondaryColor");
    return static_cast<int>(host_.secondaryColor());
}
void Vantry_Class::Van_SetPrimaryColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    traceCall("Van_SetPrimaryColor", red, green, blue);
    host_.setPrimaryColor(red, green, blue);
}
void Vantry_Class::Van_SetSecondaryColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    traceCall("Van_SetSecondaryColor", red, green, blue);
    host_.setSecondaryColor(red, green, blue);
}
void Vantry_Class::Van_AlphaOn() {
    traceCall("Van_AlphaOn");
    host_.alphaOn();
}
void Vantry_Class::Van_AlphaOff() {
    traceCall("Van_AlphaOff");
    host_.alphaOff();
}
void Vantry_Class::Van_InitMarquee() {
    traceCall("Van_InitMarquee");
    host_.initMarquee();
}
int Vantry_Class::Van_SaveUndo() {
    traceCall("Van_SaveUndo");
    host_.saveUndo();
    return 0;
}

// --- run bracket and progress ----------------------------------------------------------------------

void Vantry_Class::Van_Lock() {
    traceCall("Van_Lock");
    host_.lock();
}
void Vantry_Class::Van_Unlock() {
    traceCall("Van_Unlock");
    host_.unlock();
}
void Vantry_Class::Van_ChangePointer(short pointer) {
    traceCall("Van_ChangePointer", pointer);
    host_.changePointer(pointer);
}
void Vantry_Class::Van_RestorePointer() {
    traceCall("Van_RestorePointer");
    host_.restorePointer();
}
void Vantry_Class::van_status(double percent) {
    traceCall("van_status", percent);
    host_.status(percent);
}
void Vantry_Class::van_StatusClose() {
    traceCall("van_StatusClose");
    host_.statusClose();
}
void Vantry_Class::Van_SetProgress(double percent) {
    traceCall("Van_SetProgress", percent);
    host_.setProgress(percent);
}

// --- dialogs and paths -----------------------------------------------------------------------------

int Vantry_Class::Van_MessageBox(const std::string& text) {
    traceCall("Van_MessageBox", text);
    host_.messageBox(text);
    return 1;
}
int Vantry_Class::Van_QuestionBox(const std::string& text) {
    traceCall("Van_QuestionBox", text);
    return host_.questionBox(text);
}
int Vantry_Class::Van_ValueBox(const std::string& title, int minimum, int maximum) {
    traceCall("Van_ValueBox", title, minimum, maximum);
    return static_cast<int>(wholeNumber(host_.valueBox(title, minimum, maximum)));
}
std::string Vantry_Class::Van_RequestFile_open(const std::string& title, const std::string& defaultFile,
                                               const std::string& filter) {
    traceCall("Van_RequestFile_open", title, defaultFile, filter);
    return host_.requestFileOpen(title, defaultFile, filter);
}
std::string Vantry_Class::Van_RequestFile_save(const std::string& title, const std::string& defaultFile,
                                               const std::string& filter) {
    traceCall("Van_RequestFile_save", title, defaultFile, filter);
    return host_.requestFileSave(title, defaultFile, filter);
}
std::string Vantry_Class::Van_GetTempDir() {
    traceCall("Van_GetTempDir");
    return host_.tempDir();
}
std::string Vantry_Class::Van_GetAppDir() {
    traceCall("Van_GetAppDir");
    return host_.appDir();
}
std::string Vantry_Class::Van_WallpaperFilename() {
    traceCall("Van_WallpaperFilename");
    return host_.wallpaper();
}
void Vantry_Class::Van_SendFormObject(QWidget*& form, int flags) {
    traceCall("Van_SendFormObject", form, flags);
    host_.sendFormObject(form);
}
void Vantry_Class::Van_RenameBuffer(const std::string& name) {
    traceCall("Van_RenameBuffer", name);
    host_.renameBuffer(name);
}
void Vantry_Class::Van_NewFilename(const std::string& path) {
    traceCall("Van_NewFilename", path);
    host_.newFilename(path);
}
void Vantry_Class::Van_ShowStatus(const std::string& text) {
    traceCall("Van_ShowStatus", text);
    host_.showStatus(text);
}
int Vantry_Class::Van_ConfirmDiscard() {
    traceCall("Van_ConfirmDiscard");
    return host_.confirmDiscard();
}

} // namespace Vantry
