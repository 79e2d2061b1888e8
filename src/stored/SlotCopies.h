#pragma once
// Copies of the slot files brought within a box, in a scratch folder of their own, for runs on a
// scratch host (a dialog's live preview) that take a stored animation as their source. A slot that
// fits the box already is copied byte for byte, so a run on the copy does exactly what it does on the
// original; a larger one is shrunk frame by frame, the aspect kept. A copy is made when first asked
// for and kept while the slot file stays as it is, since reading a long slot costs far more than the
// run on its copy.

#include "stored/SlotFiles.h"

#include <QDateTime>

#include <array>
#include <optional>
#include <string>

namespace kirrel::stored {

class SlotCopies {
  public:
    SlotCopies(std::string folder, int boxWidth, int boxHeight);

    // Brings the folder's copy of the slot up to date with the slot file in realTempDir; an empty
    // slot leaves no copy. Throws what reading the slot throws (DamagedFile for a damaged one), and
    // leaves no copy then either.
    void refresh(const std::string& realTempDir, int slot);

    const std::string& folder() const { return folder_; }

  private:
    struct Stamp {
        qint64 size = 0;
        QDateTime modified, changed;
        bool operator==(const Stamp&) const = default;
    };
    static std::optional<Stamp> stampOf(const std::string& path);
    void copyFitted(const std::string& from, const std::string& to) const;

    std::string folder_;
    int boxWidth_, boxHeight_;
    std::array<std::optional<Stamp>, kSlotCount> copied_;
};

} // namespace kirrel::stored
