#include "host/FileDialogs.h"

#include <QHeaderView>
#include <QTreeView>

namespace kirrel::host {

namespace {

QString run(QFileDialog& dialog) {
    fitFileDialog(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().front();
}

} // namespace

void fitFileDialog(QFileDialog& dialog) {
    // The platform's own dialog sizes itself; Qt's widget dialog is the one that needs the room.
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setViewMode(QFileDialog::Detail);
    dialog.resize(dialog.size().expandedTo(QSize(900, 540)));
    auto* tree = dialog.findChild<QTreeView*>("treeView");
    if (!tree) return;
    QHeaderView* header = tree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < header->count(); ++column)
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

QString chooseFileToOpen(QWidget* parent, const QString& title, const QString& start, const QString& filter) {
    QFileDialog dialog(parent, title, start, filter);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog);
}

QString chooseFileToSave(QWidget* parent, const QString& title, const QString& start, const QString& filter,
                         QFileDialog::Options options) {
    QFileDialog dialog(parent, title, start, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOptions(dialog.options() | options);
    return run(dialog);
}

QString chooseFolder(QWidget* parent, const QString& title, const QString& start) {
    QFileDialog dialog(parent, title, start);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    return run(dialog);
}

} // namespace kirrel::host
