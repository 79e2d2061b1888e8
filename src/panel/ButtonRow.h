#pragma once
// The bottom row of the effect dialogs: the undo pair on the left, the run and close buttons on
// the right.

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace kirrel::panel {

QHBoxLayout* buttonRow(QCheckBox* save, QPushButton* undo, QPushButton* run, QPushButton* done);

} // namespace kirrel::panel
