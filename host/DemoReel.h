#pragma once
// What Kirrel does when it is started without a display: it plays a short session script headless
// and leaves its results in a folder for the user to look at. The script does what a newcomer would:
// a wipe into the swap picture, then the panel's own GIF export with its file requester answered, so
// the folder holds the animation's frames as PNG files, demo.gif, and pictures of the panel, the two
// dialogs and the host window. Where ImageMagick's convert (or our batch runner) is missing the GIF
// is skipped and the printed message says why; the frames are written all the same.

#include <QString>

namespace kirrel::host {

struct DemoReelResult {
    bool ok = false;
    QString message; // what to tell the user: where the files are, or what went wrong
};

// animation: a file to use instead of the built-in sample (empty for the sample).
DemoReelResult renderDemoReel(const QString& outputDir, const QString& animation = {});

} // namespace kirrel::host
