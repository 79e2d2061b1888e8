#include "stored/SlotStore.h"

#include "panel/Vantry.h"
#include "stored/SlotFiles.h"
#include "stored/Thumbnail.h"

#include <optional>
#include <string>

namespace kirrel::stored {

namespace {
constexpr short kWaitPointer = 11;
constexpr short kCreateMode = 2;
} // namespace

void SaveAnimToSlot(short slot, const std::function<void(const QImage&, QSize picture)>& showThumbnail) {
    Vantry::Vantry_Class van;
    const short frames = van.Van_GetTotalFrames();
    if (frames == 0) {
        van.Van_MessageBox("No Animation in memory!");
        return;
    }
    (void)van.Van_GetCurrentFrame(); // the user's frame is deliberately not restored: a save ends on 0
    const std::string temp = van.Van_GetTempDir();
    const std::string path = slotDataPath(temp, slot);
    const short height = van.Van_BufferHeight();
    const short width = van.Van_BufferWidth();

    van.Van_Lock();
    van.Van_ChangePointer(kWaitPointer);

    PlaneFileWriter out(path);
    out.writeInt16(frames);
    out.writeInt16(width);
    out.writeInt16(height);

    van.Van_GotoFrame(0);
    const krl::Plane r = van.Van_GetRBuffer();
    const krl::Plane g = van.Van_GetGBuffer();
    const krl::Plane b = van.Van_GetBBuffer();
    const QImage thumbnail = plotThumbnail(r, g, b, width, height);
    if (showThumbnail) showThumbnail(thumbnail, QSize(width, height));
    saveThumbnail(thumbnail, slotThumbPath(temp, slot));

    // Straight from the frame store by index: the current frame doesn't move in this loop.
    for (int i = 0; i < frames; ++i) {
        out.writePlane(van.Van_GetRFrame(i));
        out.writePlane(van.Van_GetGFrame(i));
        out.writePlane(van.Van_GetBFrame(i));
    }
    out.close();

    van.Van_GotoFrame(0);
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

void LoadAnimFromSlot(short slot, const std::function<void()>& resetSlots) {
    Vantry::Vantry_Class van;
    (void)van.Van_GetTotalFrames();
    (void)van.Van_GetCurrentFrame();
    const std::string path = slotDataPath(van.Van_GetTempDir(), slot);
    (void)van.Van_BufferHeight();
    (void)van.Van_BufferWidth();

    van.Van_Lock();
    van.Van_ChangePointer(kWaitPointer);

    bool refused = false;
    if (fileExists(path)) {
        std::optional<FrameFileReader> in;
        try {
            in.emplace(path, FrameFileReader::Kind::Slot);
        } catch (const DamagedFile& e) {
            van.Van_MessageBox("Slot " + std::to_string(slot + 1) + " can't be loaded.\n\n" + e.what() +
                               "\nThe animation in memory is unchanged.");
            refused = true;
        }
        if (in) {
            // The size comes from the header unchanged, so the host's arrays below have the file's bounds.
            van.Van_NewBuffer(in->width(), in->height());
            van.Van_CreateAnimAdv(in->header().frames, kCreateMode);
            for (int i = 0; i < in->header().frames; ++i) {
                van.Van_GotoFrame(i);
                krl::Plane r = van.Van_GetRBuffer();
                krl::Plane g = van.Van_GetGBuffer();
                krl::Plane b = van.Van_GetBBuffer();
                in->readPicture(r, g, b);
                van.Van_SetRbuffer(r);
                van.Van_SetGbuffer(g);
                van.Van_SetBbuffer(b);
            }
        }
    }

    if (!refused) van.Van_GotoFrame(0);
    if (resetSlots) resetSlots();
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

} // namespace kirrel::stored
