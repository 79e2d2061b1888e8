#pragma once
// Whole-animation undo: one level, shared by every dialog, kept in three files in the host's
// temporary directory so that an undo saved in one dialog (or before the panel was restarted) is
// restored from any other.
//
//   AnimUndo.dat   int16 Frames, Width, Height, then R, G, B planes per frame (the slot layout);
//                  Frames 0 means a still picture, and one set of planes follows all the same.
//   AlphaUndo.dat  int16 Width, Height, then the alpha plane.
//   SwapUndo.dat   int16 Width, Height, then the swap buffer's R, G, B planes.

class QCheckBox;
class QWidget;

namespace kirrel::stored {

// Saves every frame (after committing the main buffer, which may hold unsaved paint, to the current
// frame), the alpha plane and the swap buffer. The host stays on the frame it stood on.
void QuickSave();

// Rebuilds the animation from the undo files, replacing the host's frame count and size, and puts
// alpha and swap back where their sizes match the restored frame. Ends on frame 0. Without undo
// files it only moves to frame 0; a damaged undo file is refused with a message before anything
// changes.
void QuickRestore();

// A Run handler's undo save: QuickSave when "Save Undo" is checked.
void saveUndoIfChecked(const QCheckBox* chkUndoSave);

// The Undo button's click: the button is disabled while the restore runs.
void cmdUndoClick(QWidget* cmdUndo);

} // namespace kirrel::stored
