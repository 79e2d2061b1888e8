#include "host/NewAnimationDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace kirrel::host {

namespace {
QIcon swatch(QColor c) {
    QPixmap p(14, 14);
    p.fill(c);
    return QIcon(p);
}
} // namespace

NewAnimationDialog::NewAnimationDialog(QWidget* parent, const NewAnimation& start, QColor primary,
                                       QColor secondary)
    : QDialog(parent) {
    setWindowTitle("New Animation");
    setObjectName("newAnimationDialog");
    auto* form = new QFormLayout;
    auto spin = [&](const char* name, int lo, int hi, int value, const QString& suffix) {
        auto* s = new QSpinBox(this);
        s->setObjectName(name);
        s->setRange(lo, hi);
        s->setValue(std::clamp(value, lo, hi));
        s->setSuffix(suffix);
        return s;
    };
    frames_ = spin("frames", 1, kMaxFrames, start.frames, " frames");
    width_ = spin("width", 1, kMaxSide, start.width, " px");
    height_ = spin("height", 1, kMaxSide, start.height, " px");
    form->addRow("Length:", frames_);
    auto* size = new QHBoxLayout;
    size->addWidget(width_);
    size->addWidget(new QLabel("×", this));
    size->addWidget(height_);
    form->addRow("Size:", size);

    fill_ = new QComboBox(this);
    fill_->setObjectName("fill");
    fill_->addItem(swatch(Qt::white), "White", QColor(Qt::white));
    fill_->addItem(swatch(Qt::black), "Black", QColor(Qt::black));
    fill_->addItem(swatch(primary), "Primary colour", primary);
    fill_->addItem(swatch(secondary), "Secondary colour", secondary);
    const int at = fill_->findData(start.fill);
    fill_->setCurrentIndex(at < 0 ? 0 : at);
    form->addRow("Frames start as:", fill_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText("Create");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

NewAnimation NewAnimationDialog::result() const {
    return {frames_->value(), width_->value(), height_->value(), fill_->currentData().value<QColor>()};
}

} // namespace kirrel::host
