#pragma once
// File > Export Animation: where to, in which format (GIF, APNG, WebP, MP4, WebM), how many times it
// plays, the quality of the lossy formats and which pixels come out transparent. The choices that a
// format cannot hold are greyed out; the file name's extension follows the format and the other way
// round.

#include "host/AnimationExport.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;
class QSpinBox;

namespace kirrel::host {

class ExportAnimationDialog : public QDialog {
    Q_OBJECT
  public:
    ExportAnimationDialog(QWidget* parent, const QString& suggestedPath, bool hasTransparency);

    QString path() const;
    ExportOptions options() const;

  private:
    void browse();
    void formatChosen();
    void pathEdited();
    void updateControls();
    ExportFormat format() const;

    QLineEdit* path_ = nullptr;
    QComboBox* format_ = nullptr;
    QSpinBox* loop_ = nullptr;
    QSlider* quality_ = nullptr;
    QLabel* qualityText_ = nullptr;
    QComboBox* transparency_ = nullptr;
};

} // namespace kirrel::host
