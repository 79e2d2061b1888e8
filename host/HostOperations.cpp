#include "host/HostOperations.h"

#include "panel/Vantry.h"

#include <QJsonValue>

#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>

namespace kirrel::host {

namespace {

using Vantry::Vantry_Class;
using Args = QJsonArray;
using Op = std::function<void(Vantry_Class&, const Args&)>;

double num(const Args& a, int i) {
    if (i >= a.size() || !a[i].isDouble())
        throw HostOperationError("argument " + std::to_string(i + 1) + " must be a number");
    return a[i].toDouble();
}
// Whole numbers round half to even, as the panel's conversions do; a script number beyond the
// 32-bit range is refused rather than converted with undefined behaviour.
int integer(const Args& a, int i) {
    const double r = std::nearbyint(num(a, i));
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        throw HostOperationError("argument " + std::to_string(i + 1) + " is out of range");
    return static_cast<int>(r);
}
std::string str(const Args& a, int i) {
    if (i >= a.size() || !a[i].isString())
        throw HostOperationError("argument " + std::to_string(i + 1) + " must be a string");
    return a[i].toString().toStdString();
}

const std::map<QString, std::pair<int, Op>>& table() {
    static const std::map<QString, std::pair<int, Op>> ops = {
        {"Van_BufferWidth", {0, [](Vantry_Class& v, const Args&) { v.Van_BufferWidth(); }}},
        {"Van_BufferHeight", {0, [](Vantry_Class& v, const Args&) { v.Van_BufferHeight(); }}},
        {"Van_GetTotalFrames", {0, [](Vantry_Class& v, const Args&) { v.Van_GetTotalFrames(); }}},
        {"Van_GetCurrentFrame", {0, [](Vantry_Class& v, const Args&) { v.Van_GetCurrentFrame(); }}},
        {"Van_GotoFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_GotoFrame(integer(a, 0)); }}},
        {"Van_InsertFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_InsertFrame(integer(a, 0)); }}},
        {"Van_CreateAnim", {1, [](Vantry_Class& v, const Args& a) { v.Van_CreateAnim(num(a, 0)); }}},
        {"Van_CreateAnimAdv",
         {2, [](Vantry_Class& v,
                const Args& a) { v.Van_CreateAnimAdv(integer(a, 0), static_cast<short>(integer(a, 1))); }}},
        {"Van_NewBuffer",
         {2, [](Vantry_Class& v, const Args& a) { v.Van_NewBuffer(integer(a, 0), integer(a, 1)); }}},
        {"Van_ShowScrub",
         {2, [](Vantry_Class& v, const Args& a) { v.Van_ShowScrub(integer(a, 0), integer(a, 1)); }}},
        {"Van_StopAnimation", {0, [](Vantry_Class& v, const Args&) { v.Van_StopAnimation(); }}},
        {"Van_Refresh", {0, [](Vantry_Class& v, const Args&) { v.Van_Refresh(); }}},
        {"Van_DeleteFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_DeleteFrame(integer(a, 0)); }}},
        {"Van_GetRBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetRBuffer(); }}},
        {"Van_GetGBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetGBuffer(); }}},
        {"Van_GetBBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetBBuffer(); }}},
        {"Van_GetABuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetABuffer(); }}},
        {"Van_GetSwapRBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetSwapRBuffer(); }}},
        {"Van_GetSwapGBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetSwapGBuffer(); }}},
        {"Van_GetSwapBBuffer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetSwapBBuffer(); }}},
        {"Van_GetRFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetRFrame(integer(a, 0)); }}},
        {"Van_GetGFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetGFrame(integer(a, 0)); }}},
        {"Van_GetBFrame", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetBFrame(integer(a, 0)); }}},
        {"Van_GetLayerR", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetLayerR(integer(a, 0)); }}},
        {"Van_GetLayerG", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetLayerG(integer(a, 0)); }}},
        {"Van_GetLayerB", {1, [](Vantry_Class& v, const Args& a) { v.Van_GetLayerB(integer(a, 0)); }}},
        {"Van_GetLayerCount", {0, [](Vantry_Class& v, const Args&) { v.Van_GetLayerCount(); }}},
        {"Van_GetCurrentLayer", {0, [](Vantry_Class& v, const Args&) { v.Van_GetCurrentLayer(); }}},
        {"Van_GetLayerOpacity", {0, [](Vantry_Class& v, const Args&) { v.Van_GetLayerOpacity(); }}},
        {"Van_getPrimaryColor", {0, [](Vantry_Class& v, const Args&) { v.Van_getPrimaryColor(); }}},
        {"Van_getSecondaryColor", {0, [](Vantry_Class& v, const Args&) { v.Van_getSecondaryColor(); }}},
        {"Van_SetPrimaryColor",
         {3,
          [](Vantry_Class& v, const Args& a) {
              v.Van_SetPrimaryColor(static_cast<std::uint8_t>(integer(a, 0)),
                                    static_cast<std::uint8_t>(integer(a, 1)),
                                    static_cast<std::uint8_t>(integer(a, 2)));
          }}},
        {"Van_SetSecondaryColor",
         {3,
          [](Vantry_Class& v, const Args& a) {
              v.Van_SetSecondaryColor(static_cast<std::uint8_t>(integer(a, 0)),
                                      static_cast<std::uint8_t>(integer(a, 1)),
                                      static_cast<std::uint8_t>(integer(a, 2)));
          }}},
        {"Van_AlphaOn", {0, [](Vantry_Class& v, const Args&) { v.Van_AlphaOn(); }}},
        {"Van_AlphaOff", {0, [](Vantry_Class& v, const Args&) { v.Van_AlphaOff(); }}},
        {"Van_InitMarquee", {0, [](Vantry_Class& v, const Args&) { v.Van_InitMarquee(); }}},
        {"Van_SaveUndo", {0, [](Vantry_Class& v, const Args&) { v.Van_SaveUndo(); }}},
        {"Van_Lock", {0, [](Vantry_Class& v, const Args&) { v.Van_Lock(); }}},
        {"Van_Unlock", {0, [](Vantry_Class& v, const Args&) { v.Van_Unlock(); }}},
        {"Van_ChangePointer",
         {1, [](Vantry_Class& v, const Args& a) { v.Van_ChangePointer(static_cast<short>(integer(a, 0))); }}},
        {"Van_RestorePointer", {0, [](Vantry_Class& v, const Args&) { v.Van_RestorePointer(); }}},
        {"van_status", {1, [](Vantry_Class& v, const Args& a) { v.van_status(num(a, 0)); }}},
        {"van_StatusClose", {0, [](Vantry_Class& v, const Args&) { v.van_StatusClose(); }}},
        {"Van_SetProgress", {1, [](Vantry_Class& v, const Args& a) { v.Van_SetProgress(num(a, 0)); }}},
        {"Van_MessageBox", {1, [](Vantry_Class& v, const Args& a) { v.Van_MessageBox(str(a, 0)); }}},
        {"Van_QuestionBox", {1, [](Vantry_Class& v, const Args& a) { v.Van_QuestionBox(str(a, 0)); }}},
        {"Van_ValueBox",
         {3,
          [](Vantry_Class& v, const Args& a) { v.Van_ValueBox(str(a, 0), integer(a, 1), integer(a, 2)); }}},
        {"Van_RequestFile_open",
         {3,
          [](Vantry_Class& v, const Args& a) { v.Van_RequestFile_open(str(a, 0), str(a, 1), str(a, 2)); }}},
        {"Van_RequestFile_save",
         {3,
          [](Vantry_Class& v, const Args& a) { v.Van_RequestFile_save(str(a, 0), str(a, 1), str(a, 2)); }}},
        {"Van_GetTempDir", {0, [](Vantry_Class& v, const Args&) { v.Van_GetTempDir(); }}},
        {"Van_GetAppDir", {0, [](Vantry_Class& v, const Args&) { v.Van_GetAppDir(); }}},
        {"Van_WallpaperFilename", {0, [](Vantry_Class& v, const Args&) { v.Van_WallpaperFilename(); }}},
        {"Van_RenameBuffer", {1, [](Vantry_Class& v, const Args& a) { v.Van_RenameBuffer(str(a, 0)); }}},
        {"Van_NewFilename", {1, [](Vantry_Class& v, const Args& a) { v.Van_NewFilename(str(a, 0)); }}},
        {"Van_ConfirmDiscard", {0, [](Vantry_Class& v, const Args&) { v.Van_ConfirmDiscard(); }}},
        {"Van_ShowStatus", {1, [](Vantry_Class& v, const Args& a) { v.Van_ShowStatus(str(a, 0)); }}},
    };
    return ops;
}

} // namespace

void callHostOperation(const QString& name, const QJsonArray& args) {
    auto it = table().find(name);
    if (it == table().end())
        throw HostOperationError("\"" + name.toStdString() + "\" is not a host operation a script can call");
    if (args.size() != it->second.first)
        throw HostOperationError(name.toStdString() + " takes " + std::to_string(it->second.first) +
                                 " arguments");
    Vantry_Class van;
    it->second.second(van, args);
}

} // namespace kirrel::host
