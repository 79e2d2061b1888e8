#include "stored/AnimUndo.h"

#include "panel/Vantry.h"
#include "stored/SlotFiles.h"

#include <QCheckBox>

#include <optional>
#include <string>

namespace kirrel::stored {

namespace {

constexpr short kWaitPointer = 11;
constexpr short kCreateMode = 2;

// --- alpha and swap: int16 Width, Height, then the planes ----------------------------------------

struct PlaneSetHeader {
    int width, height;
};

// Opens a plane-set file and checks that it holds `planes` planes of its header's bounds.
PlaneSetHeader openPlaneSet(PlaneFileReader& in, int planes) {
    const int w = in.readInt16();
    const int h = in.readInt16();
    in.expectPlanes(planes, w, h);
    return {w, h};
}

void writePlaneSet(const std::string& path, short width, short height,
                   std::initializer_list<krl::Plane> planes) {
    PlaneFileWriter out(path);
    out.writeInt16(width);
    out.writeInt16(height);
    for (const krl::Plane& p : planes)
        out.writePlane(p);
    out.close();
}

void SaveAlphaUndo() {
    Vantry::Vantry_Class van;
    const std::string path = van.Van_GetTempDir() + kAlphaUndoName;
    const short height = van.Van_BufferHeight();
    const short width = van.Van_BufferWidth();
    writePlaneSet(path, width, height, {van.Van_GetABuffer()});
}

void SaveSwapUndo() {
    Vantry::Vantry_Class van;
    const std::string path = van.Van_GetTempDir() + kSwapUndoName;
    const short height = van.Van_BufferHeight();
    const short width = van.Van_BufferWidth();
    krl::Plane r = van.Van_GetSwapRBuffer();
    krl::Plane g = van.Van_GetSwapGBuffer();
    krl::Plane b = van.Van_GetSwapBBuffer();
    writePlaneSet(path, width, height, {r, g, b});
}

// Whether the host's buffer has these bounds; both sizes are always asked, width first.
bool hostHasBounds(Vantry::Vantry_Class& van, int width, int height) {
    const bool sameWidth = van.Van_BufferWidth() == width;
    const bool sameHeight = van.Van_BufferHeight() == height;
    return sameWidth && sameHeight;
}

void RestoreAlphaUndo() {
    Vantry::Vantry_Class van;
    const std::string path = van.Van_GetTempDir() + kAlphaUndoName;
    if (!fileExists(path)) return;
    krl::Plane alpha;
    PlaneSetHeader size{};
    {
        PlaneFileReader in(path);
        size = openPlaneSet(in, 1);
        in.readPlane(alpha, size.width, size.height);
    }
    // An alpha plane of another size than the restored frame is dropped without a word.
    if (hostHasBounds(van, size.width, size.height)) van.Van_SetAbuffer(alpha);
}

void RestoreSwapUndo() {
    Vantry::Vantry_Class van;
    const std::string path = van.Van_GetTempDir() + kSwapUndoName;
    if (!fileExists(path)) return;
    krl::Plane r, g, b;
    PlaneSetHeader size{};
    {
        PlaneFileReader in(path);
        size = openPlaneSet(in, 3);
        in.readPlane(r, size.width, size.height);
        in.readPlane(g, size.width, size.height);
        in.readPlane(b, size.width, size.height);
    }
    if (hostHasBounds(van, size.width, size.height)) {
        van.Van_SetSwapRBuffer(r);
        van.Van_SetSwapGBuffer(g);
        van.Van_SetSwapBBuffer(b);
    }
}

// The fault of the first damaged undo file, if any. All three are checked before anything changes,
// so that a damaged set is refused as a whole rather than half applied.
std::optional<std::string> damagedUndo(const std::string& temp) {
    try {
        if (const std::string anim = temp + kAnimUndoName; fileExists(anim))
            (void)FrameFileReader(anim, FrameFileReader::Kind::Undo);
        for (auto [name, planes] : {std::pair{kAlphaUndoName, 1}, std::pair{kSwapUndoName, 3}}) {
            if (!fileExists(temp + name)) continue;
            PlaneFileReader in(temp + name);
            openPlaneSet(in, planes);
        }
    } catch (const DamagedFile& e) {
        return e.what();
    }
    return std::nullopt;
}

// Reads the next picture of the undo file over the main buffer's arrays and sends it back.
void restoreMainBuffer(Vantry::Vantry_Class& van, FrameFileReader& in) {
    krl::Plane r = van.Van_GetRBuffer();
    krl::Plane g = van.Van_GetGBuffer();
    krl::Plane b = van.Van_GetBBuffer();
    in.readPicture(r, g, b);
    van.Van_SetRbuffer(r);
    van.Van_SetGbuffer(g);
    van.Van_SetBbuffer(b);
}

} // namespace

void QuickSave() {
    Vantry::Vantry_Class van;
    const int savedFrame = van.Van_GetCurrentFrame();
    const short total = van.Van_GetTotalFrames();
    const std::string path = van.Van_GetTempDir() + kAnimUndoName;
    const short height = van.Van_BufferHeight();
    const short width = van.Van_BufferWidth();

    van.Van_Lock();
    van.Van_ChangePointer(kWaitPointer);

    const short last = static_cast<short>(total - 1);
    PlaneFileWriter out(path);
    out.writeInt16(total);
    out.writeInt16(width);
    out.writeInt16(height);
    if (total == 0) {
        // A still picture: the header says no frames, and the main buffer follows.
        out.writePlane(van.Van_GetRBuffer());
        out.writePlane(van.Van_GetGBuffer());
        out.writePlane(van.Van_GetBBuffer());
        out.close();
    }

    // The main buffer may hold paint that hasn't reached the frame store yet: commit it to the
    // current frame, so that the copy on disk is what the user sees.
    const int current = van.Van_GetCurrentFrame();
    const krl::Plane r = van.Van_GetRBuffer();
    const krl::Plane g = van.Van_GetGBuffer();
    const krl::Plane b = van.Van_GetBBuffer();
    van.Van_SetRFrame(r, current);
    van.Van_SetGFrame(g, current);
    van.Van_SetBFrame(b, current);

    for (int i = 0; i <= last; ++i) {
        out.writePlane(van.Van_GetRFrame(i));
        out.writePlane(van.Van_GetGFrame(i));
        out.writePlane(van.Van_GetBFrame(i));
    }
    out.close();

    SaveAlphaUndo();
    SaveSwapUndo();

    van.Van_GotoFrame(savedFrame);
    if (total > 0) {
        const short now = van.Van_GetTotalFrames();
        van.Van_ShowScrub(savedFrame, now);
    }
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

void QuickRestore() {
    Vantry::Vantry_Class van;
    (void)van.Van_GetTotalFrames();
    (void)van.Van_GetCurrentFrame();
    const std::string temp = van.Van_GetTempDir();
    const std::string path = temp + kAnimUndoName;
    (void)van.Van_BufferHeight();
    (void)van.Van_BufferWidth();

    van.Van_Lock();
    van.Van_ChangePointer(kWaitPointer);

    if (const auto fault = damagedUndo(temp)) {
        van.Van_MessageBox("Undo can't be restored.\n\n" + *fault +
                           "\nThe animation in memory is unchanged.");
        van.Van_SetProgress(0);
        van.Van_RestorePointer();
        van.Van_Unlock();
        return;
    }

    if (fileExists(path)) {
        FrameFileReader in(path, FrameFileReader::Kind::Undo);
        // The restore starts from nothing: frame count and size become the saved ones.
        van.Van_NewBuffer(in.width(), in.height());
        van.Van_CreateAnimAdv(in.header().frames, kCreateMode);
        if (in.header().frames == 0) restoreMainBuffer(van, in);
        for (int i = 0; i < in.header().frames; ++i) {
            van.Van_GotoFrame(i);
            restoreMainBuffer(van, in);
        }
    }

    RestoreAlphaUndo();
    RestoreSwapUndo();

    // Deliberately frame 0, not the frame that was current when the undo was saved.
    van.Van_GotoFrame(0);
    van.Van_Refresh();
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

void saveUndoIfChecked(const QCheckBox* chkUndoSave) {
    if (chkUndoSave && chkUndoSave->checkState() == Qt::Checked) QuickSave();
}

void cmdUndoClick(QWidget* cmdUndo) {
    // The button comes back even when the restore fails, so Undo can always be pressed again.
    struct Reenable {
        QWidget* button;
        ~Reenable() {
            if (button) button->setEnabled(true);
        }
    } reenable{cmdUndo};
    if (cmdUndo) cmdUndo->setEnabled(false);
    QuickRestore();
}

} // namespace kirrel::stored
