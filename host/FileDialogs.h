#pragma once
// The host's file requesters: Qt's own dialog, sized so that its columns (name, size, type, date)
// show whole instead of cut to "PN...ge" and "24 Nov...:10:20".

#include <QFileDialog>
#include <QString>

namespace kirrel::host {

// Gives a requester room and fits its detail columns to their contents once it shows a folder.
void fitFileDialog(QFileDialog& dialog);

// The usual requesters, fitted; the empty string when cancelled.
QString chooseFileToOpen(QWidget* parent, const QString& title, const QString& start, const QString& filter);
QString chooseFileToSave(QWidget* parent, const QString& title, const QString& start, const QString& filter,
                         QFileDialog::Options options = {});
QString chooseFolder(QWidget* parent, const QString& title, const QString& start);

} // namespace kirrel::host
