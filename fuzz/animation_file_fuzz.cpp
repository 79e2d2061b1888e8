// The host's own animation, picture and alpha files (.dat), as `kirrel --script` and the File menu
// load them. A refusal is an exception; anything else is a fault.

#include "FuzzFile.h"
#include "host/AnimationFiles.h"

#include <QString>

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString path = QString::fromStdString(kirrel::fuzz::writeInput(data, size, ".dat"));
    try {
        (void)kirrel::host::readAnimationDat(path);
    } catch (const std::exception&) {
    }
    try {
        (void)kirrel::host::readPictureDat(path);
    } catch (const std::exception&) {
    }
    try {
        (void)kirrel::host::readPlaneDat(path);
    } catch (const std::exception&) {
    }
    return 0;
}
