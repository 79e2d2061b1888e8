#pragma once
// What Kirrel does when it is started without a display: it plays a short session script headless
// and leaves its results in a folder for the user to look at — the animation's frames as PNG files
// (after a wipe into the swap picture once the Wipes dialog is part of the build), the panel and the
// host window as pictures.

#include <QString>

namespace kirrel::host {

struct DemoReelResult {
    bool ok = false;
    QString message; // what to tell the user: where the files are, or what went wrong
};

// animation: a file to use instead of the built-in sample (empty for the sample).
DemoReelResult renderDemoReel(const QString& outputDir, const QString& animation = {});

} // namespace kirrel::host
