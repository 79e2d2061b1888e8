#pragma once
// File > New Animation: the number of frames, the picture size and what the frames start as.

#include <QColor>
#include <QDialog>

class QComboBox;
class QSpinBox;

namespace kirrel::host {

struct NewAnimation {
    int frames = 30;
    int width = 320;
    int height = 240;
    QColor fill = Qt::white;
};

class NewAnimationDialog : public QDialog {
    Q_OBJECT
  public:
    // primary and secondary are offered as fills beside white and black.
    NewAnimationDialog(QWidget* parent, const NewAnimation& start, QColor primary, QColor secondary);
    NewAnimation result() const;

    static constexpr int kMaxFrames = 9999;
    static constexpr int kMaxSide = 8192;

  private:
    QSpinBox *frames_, *width_, *height_;
    QComboBox* fill_;
};

} // namespace kirrel::host
