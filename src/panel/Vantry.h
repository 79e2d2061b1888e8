#pragma once
// The host's automation interface as the panel calls it. A Vantry_Class is a light handle: every
// instance reaches the one running host, so the lock, the current frame and the progress display
// set through one handle are seen through all others. Names and their odd case are the host's own.
// Numbers are accepted as 16-bit, 32-bit or double; by-reference arguments are never changed.

#include "pixel/Plane.h"

#include <cstdint>
#include <string>

class QWidget;

namespace kirrel::host {
class HostState;
}

namespace Vantry {

class Vantry_Class {
  public:
    Vantry_Class();

    // size and frames
    short Van_BufferWidth();
    short Van_BufferHeight();
    short Van_GetTotalFrames();
    int Van_GetCurrentFrame();
    void Van_GotoFrame(int frame);
    void Van_InsertFrame(int frame);
    void Van_CreateAnim(double count);
    void Van_CreateAnimAdv(int frames, short mode);
    void Van_NewBuffer(int width, int height);
    void Van_ShowScrub(int position, int total);
    void Van_StopAnimation();
    void Van_Refresh();
    void Van_DeleteFrame(int frame);

    // planes
    krl::Plane Van_GetRBuffer();
    krl::Plane Van_GetGBuffer();
    krl::Plane Van_GetBBuffer();
    void Van_SetRbuffer(const krl::Plane& p);
    void Van_SetGbuffer(const krl::Plane& p);
    void Van_SetBbuffer(const krl::Plane& p);
    krl::Plane Van_GetABuffer();
    void Van_SetAbuffer(const krl::Plane& p);
    krl::Plane Van_GetSwapRBuffer();
    krl::Plane Van_GetSwapGBuffer();
    krl::Plane Van_GetSwapBBuffer();
    void Van_SetSwapRBuffer(const krl::Plane& p);
    void Van_SetSwapGBuffer(const krl::Plane& p);
    void Van_SetSwapBBuffer(const krl::Plane& p);
    krl::Plane Van_GetRFrame(int frame);
    krl::Plane Van_GetGFrame(int frame);
    krl::Plane Van_GetBFrame(int frame);
    void Van_SetRFrame(const krl::Plane& p, int frame);
    void Van_SetGFrame(const krl::Plane& p, int frame);
    void Van_SetBFrame(const krl::Plane& p, int frame);
    krl::Plane Van_GetLayerR(int layer);
    krl::Plane Van_GetLayerG(int layer);
    krl::Plane Van_GetLayerB(int layer);
    int Van_GetLayerCount();
    int Van_GetCurrentLayer();
    std::uint8_t Van_GetLayerOpacity();

    // colours and alpha display
    int Van_getPrimaryColor();
    int Van_getSecondaryColor();
    void Van_SetPrimaryColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    void Van_SetSecondaryColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    void Van_AlphaOn();
    void Van_AlphaOff();
    void Van_InitMarquee();
    int Van_SaveUndo();

    // run bracket and progress
    void Van_Lock();
    void Van_Unlock();
    void Van_ChangePointer(short pointer);
    void Van_RestorePointer();
    void van_status(double percent);
    void van_StatusClose();
    void Van_SetProgress(double percent);

    // dialogs and paths
    int Van_MessageBox(const std::string& text);
    int Van_QuestionBox(const std::string& text);
    int Van_ValueBox(const std::string& title, int minimum, int maximum);
    std::string Van_RequestFile_open(const std::string& title, const std::string& defaultFile,
                                     const std::string& filter);
    std::string Van_RequestFile_save(const std::string& title, const std::string& defaultFile,
                                     const std::string& filter);
    std::string Van_GetTempDir();
    std::string Van_GetAppDir();
    std::string Van_WallpaperFilename();
    void Van_SendFormObject(QWidget*& form, int flags);
    void Van_RenameBuffer(const std::string& name);
    void Van_NewFilename(const std::string& path);
    // Asks, when the host's animation holds unsaved changes, whether they may go; 2 means no. Called
    // before an import replaces the animation. Returns 1 without asking when nothing is unsaved.
    int Van_ConfirmDiscard();
    // A short word in the host's status bar, for a refusal that needs no box.
    void Van_ShowStatus(const std::string& text);

  private:
    kirrel::host::HostState& host_;
};

} // namespace Vantry
