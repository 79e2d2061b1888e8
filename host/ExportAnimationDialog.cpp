#include "host/ExportAnimationDialog.h"

#include "host/FileDialogs.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

namespace kirrel::host {

namespace {

struct FormatChoice {
    ExportFormat format;
    const char* text;
    const char* extension;
};

constexpr FormatChoice kFormats[] = {
    {ExportFormat::Gif, "Animated GIF (.gif)", "gif"},
    {ExportFormat::Apng, "Animated PNG (.png)", "png"},
    {ExportFormat::WebP, "Animated WebP (.webp)", "webp"},
    {ExportFormat::Mp4, "MP4 video, H.264 (.mp4)", "mp4"},
    {ExportFormat::WebM, "WebM video, VP9 (.webm)", "webm"},
};

QString filterText() {
    QStringList parts;
    for (const FormatChoice& f : kFormats)
        parts << QString("%1 (*.%2)").arg(exportFormatName(f.format), QString::fromLatin1(f.extension));
    return parts.join(";;");
}

} // namespace

ExportAnimationDialog::ExportAnimationDialog(QWidget* parent, const QString& suggestedPath,
                                             bool hasTransparency)
    : QDialog(parent) {
    setObjectName("exportAnimationDialog");
    setWindowTitle("Export Animation");
    auto* form = new QFormLayout(this);

    auto* fileRow = new QHBoxLayout;
    path_ = new QLineEdit(suggestedPath, this);
    path_->setObjectName("exportPath");
    path_->setMinimumWidth(360);
    auto* browseButton = new QPushButton("Browse…", this);
    fileRow->addWidget(path_, 1);
    fileRow->addWidget(browseButton);
    form->addRow("File:", fileRow);

    format_ = new QComboBox(this);
    format_->setObjectName("exportFormat");
    for (const FormatChoice& f : kFormats)
        format_->addItem(f.text, static_cast<int>(f.format));
    form->addRow("Format:", format_);

    loop_ = new QSpinBox(this);
    loop_->setObjectName("exportLoop");
    loop_->setRange(0, 65535);
    loop_->setSpecialValueText("For ever");
    loop_->setSuffix(" times");
    form->addRow("Plays:", loop_);

    auto* qualityRow = new QHBoxLayout;
    quality_ = new QSlider(Qt::Horizontal, this);
    quality_->setObjectName("exportQuality");
    quality_->setRange(0, 100);
    qualityText_ = new QLabel(this);
    qualityText_->setMinimumWidth(qualityText_->fontMetrics().horizontalAdvance("100 (lossless)") + 6);
    qualityRow->addWidget(quality_, 1);
    qualityRow->addWidget(qualityText_);
    form->addRow("Quality:", qualityRow);

    transparency_ = new QComboBox(this);
    transparency_->setObjectName("exportTransparency");
    transparency_->addItem("None: every pixel opaque", static_cast<int>(ExportTransparency::None));
    transparency_->addItem("The alpha channel", static_cast<int>(ExportTransparency::Alpha));
    transparency_->addItem("Where the paper (secondary) colour shows",
                           static_cast<int>(ExportTransparency::Paper));
    transparency_->setCurrentIndex(hasTransparency ? 1 : 0);
    form->addRow("Transparent:", transparency_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText("Export");
    form->addRow(buttons);

    connect(browseButton, &QPushButton::clicked, this, &ExportAnimationDialog::browse);
    connect(format_, &QComboBox::currentIndexChanged, this, &ExportAnimationDialog::formatChosen);
    connect(path_, &QLineEdit::textEdited, this, &ExportAnimationDialog::pathEdited);
    connect(quality_, &QSlider::valueChanged, this, &ExportAnimationDialog::updateControls);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    pathEdited();
    quality_->setValue(format() == ExportFormat::WebP ? 100 : 80);
    updateControls();
}

ExportFormat ExportAnimationDialog::format() const {
    return static_cast<ExportFormat>(format_->currentData().toInt());
}

QString ExportAnimationDialog::path() const {
    return path_->text().trimmed();
}

ExportOptions ExportAnimationDialog::options() const {
    ExportOptions o;
    o.loop = loop_->value();
    o.quality = formatHasQuality(format()) ? quality_->value() : -1;
    o.transparency = static_cast<ExportTransparency>(transparency_->currentData().toInt());
    return o;
}

void ExportAnimationDialog::browse() {
    const QString chosen =
        chooseFileToSave(this, "Export Animation", path(), filterText(), QFileDialog::DontConfirmOverwrite);
    if (chosen.isEmpty()) return;
    path_->setText(chosen);
    pathEdited();
}

// The extension follows the format chosen, so that the file says what it holds.
void ExportAnimationDialog::formatChosen() {
    const QString extension = QString::fromLatin1(kFormats[format_->currentIndex()].extension);
    QFileInfo info(path());
    if (!path().isEmpty() && exportFormatFor(path()) != format())
        path_->setText(QDir(info.path()).filePath(info.completeBaseName() + "." + extension));
    if (format() == ExportFormat::WebP) quality_->setValue(100);
    updateControls();
}

// And a typed extension chooses the format.
void ExportAnimationDialog::pathEdited() {
    const auto f = exportFormatFor(path());
    if (!f) return;
    const int index = format_->findData(static_cast<int>(*f));
    if (index >= 0 && index != format_->currentIndex()) {
        const QSignalBlocker block(format_);
        format_->setCurrentIndex(index);
    }
    updateControls();
}

void ExportAnimationDialog::updateControls() {
    const ExportFormat f = format();
    loop_->setEnabled(formatHasLoopCount(f));
    quality_->setEnabled(formatHasQuality(f));
    transparency_->setEnabled(formatHasTransparency(f));
    const bool lossless = f == ExportFormat::WebP && quality_->value() == 100;
    qualityText_->setText(!formatHasQuality(f) ? QString()
                          : lossless           ? QString("100 (lossless)")
                                               : QString::number(quality_->value()));
}

} // namespace kirrel::host
