#pragma once
// Writing an animation as a numbered PNG sequence: "walk.png" chosen in a save requester becomes
// walk_0000.png, walk_0001.png, ... beside it, which File > Open Frame Folder reads back in order.

#include "host/Picture.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kirrel::host {

// The file names the frames will get (at least four digits, more for long animations).
QStringList pngSequenceNames(const QString& chosenFile, int count);
// Writes every frame; with an alpha plane of the pictures' size the PNGs carry it as transparency.
// Throws std::runtime_error naming the file that could not be written.
void writePngSequence(const QString& chosenFile, const std::vector<Picture>& frames, const krl::Plane* alpha);

} // namespace kirrel::host
