#pragma once
// The few controls the panel needs beyond Qt's own: a label that answers a click, and a picture box.

#include <QLabel>
#include <QString>

namespace kirrel::panel {

class ClickLabel : public QLabel {
    Q_OBJECT
  public:
    using QLabel::QLabel;
    void click() { emit clicked(); }

  signals:
    void clicked();

  protected:
    void mouseReleaseEvent(QMouseEvent* e) override;
};

// A picture box: shows a picture at its natural size; "PictureBox" in state dumps.
class PictureBox : public QLabel {
    Q_OBJECT
  public:
    using QLabel::QLabel;
};

// The kind of a control as session scripts and state dumps name it.
QString controlKind(const QObject* control);

} // namespace kirrel::panel
