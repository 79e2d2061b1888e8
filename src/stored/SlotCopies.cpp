#include "stored/SlotCopies.h"

#include "host/ScaledCopies.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace kirrel::stored {

SlotCopies::SlotCopies(std::string folder, int boxWidth, int boxHeight)
    : folder_(std::move(folder)), boxWidth_(boxWidth), boxHeight_(boxHeight) {}

std::optional<SlotCopies::Stamp> SlotCopies::stampOf(const std::string& path) {
    if (!fileExists(path)) return std::nullopt;
    const QFileInfo info(QString::fromStdString(path));
    return Stamp{info.size(), info.lastModified(), info.metadataChangeTime()};
}

void SlotCopies::refresh(const std::string& realTempDir, int slot) {
    if (slot < 0 || slot >= kSlotCount) return;
    const std::string from = slotDataPath(realTempDir, slot);
    auto& copied = copied_[static_cast<std::size_t>(slot)];
    const std::optional<Stamp> now = stampOf(from);
    if (copied && copied == now) return;
    const std::string to = slotDataPath(folder_, slot);
    copied.reset();
    QFile::remove(QString::fromStdString(to));
    if (!now) return;
    try {
        copyFitted(from, to);
    } catch (...) {
        QFile::remove(QString::fromStdString(to));
        throw;
    }
    copied = now;
}

void SlotCopies::copyFitted(const std::string& from, const std::string& to) const {
    // Opening checks the whole file, as the run itself would before anything changes.
    FrameFileReader in(from, FrameFileReader::Kind::Slot);
    const host::Bounds fit = host::fittedBounds(in.width(), in.height(), boxWidth_, boxHeight_);
    if (fit.w == in.width() && fit.h == in.height()) {
        if (!QFile::copy(QString::fromStdString(from), QString::fromStdString(to)))
            throw std::runtime_error(fileNameOf(from) + " cannot be copied.");
        return;
    }
    PlaneFileWriter out(to);
    out.writeInt16(in.header().frames);
    out.writeInt16(fit.w);
    out.writeInt16(fit.h);
    krl::Triple frame;
    while (in.picturesLeft() > 0) {
        in.readPicture(frame);
        out.writePlane(host::shrinkPlane(frame.r, fit.w, fit.h));
        out.writePlane(host::shrinkPlane(frame.g, fit.w, fit.h));
        out.writePlane(host::shrinkPlane(frame.b, fit.w, fit.h));
    }
    out.close();
}

} // namespace kirrel::stored
