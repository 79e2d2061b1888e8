#include "host/QtResponder.h"

#include "host/FileDialogs.h"

#include "host/FileFilter.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QSettings>

#include <algorithm>
#include <climits>
#include <cmath>

namespace kirrel::host {

namespace {

// The panel pads its texts with line feeds for the layout of its host's boxes; Qt lays out its own.
QString boxText(const std::string& text) {
    QString t = QString::fromStdString(text);
    while (t.startsWith('\n') || t.startsWith('\r'))
        t.remove(0, 1);
    while (t.endsWith('\n') || t.endsWith('\r'))
        t.chop(1);
    return t;
}

QString boxTitle(const std::string& title) {
    return title.empty() ? QStringLiteral("Kirrel") : QString::fromStdString(title);
}

int clampedInt(double v) {
    if (std::isnan(v)) return 0;
    return static_cast<int>(std::clamp(v, static_cast<double>(INT_MIN), static_cast<double>(INT_MAX)));
}

// Requesters start where the user last picked a file.
constexpr const char* kLastFolderKey = "requester/lastFolder";

} // namespace

QtResponder::QtResponder(std::function<QWidget*()> parentFor) : parentFor_(std::move(parentFor)) {}

QWidget* QtResponder::parent() const {
    if (parentFor_)
        if (QWidget* w = parentFor_()) return w;
    return QApplication::activeWindow();
}

void QtResponder::message(const std::string& text, const std::string& title) {
    QMessageBox::information(parent(), boxTitle(title), boxText(text));
}

int QtResponder::question(const std::string& text, const std::string& title) {
    const auto answer = QMessageBox::question(parent(), boxTitle(title), boxText(text),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
    return answer == QMessageBox::Yes ? kYes : kNo;
}

int QtResponder::discard(const std::string& text, const std::string& title) {
    const auto answer = QMessageBox::question(parent(), boxTitle(title), boxText(text),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    return answer == QMessageBox::Yes ? kYes : kNo;
}

double QtResponder::value(const std::string& title, double minimum, double maximum) {
    // The box opens on the minimum it is given but lets the user go down to 0 as well: the panel
    // passes a current value there (the stripe sizes), and a size must be able to shrink again.
    const int start = clampedInt(std::min(minimum, maximum));
    const int lo = std::min(0, start);
    const int hi = clampedInt(std::max(minimum, maximum));
    bool ok = false;
    const int v =
        QInputDialog::getInt(parent(), QStringLiteral("Kirrel"), boxText(title), start, lo, hi, 1, &ok);
    return ok ? v : -1;
}

std::string QtResponder::requestFile(bool save, const std::string& title, const std::string& defaultFile,
                                     const std::string& filter) {
    QSettings settings;
    QString start = QString::fromStdString(defaultFile);
    if (QFileInfo(start).isRelative()) {
        const QString folder = settings.value(kLastFolderKey, QDir::homePath()).toString();
        start = QDir(folder).filePath(start);
    }
    QFileDialog dialog(parent(), boxTitle(title), start, QString::fromStdString(qtFileFilter(filter)));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // A name typed without an extension gets the one the filter asks for.
    if (save) dialog.setDefaultSuffix(QString::fromStdString(filterSuffix(filter)));
    fitFileDialog(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString chosen = dialog.selectedFiles().front();
    settings.setValue(kLastFolderKey, QFileInfo(chosen).absolutePath());
    return QDir::toNativeSeparators(chosen).toStdString();
}

std::string QtResponder::fileOpen(const std::string& title, const std::string& defaultFile,
                                  const std::string& filter) {
    return requestFile(false, title, defaultFile, filter);
}

std::string QtResponder::fileSave(const std::string& title, const std::string& defaultFile,
                                  const std::string& filter) {
    return requestFile(true, title, defaultFile, filter);
}

std::optional<std::string> QtResponder::input(const std::string& prompt, const std::string& title,
                                              const std::string& defaultText) {
    bool ok = false;
    const QString text = QInputDialog::getText(parent(), boxTitle(title), boxText(prompt), QLineEdit::Normal,
                                               QString::fromStdString(defaultText), &ok);
    if (!ok) return std::nullopt;
    return text.toStdString();
}

void QtResponder::error(const std::string& text, const std::string& title) {
    QMessageBox::warning(parent(), boxTitle(title), boxText(text));
}

} // namespace kirrel::host
