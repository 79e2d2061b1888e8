#pragma once
// A file written under a temporary name beside its target (".name.kirrel-XXXXXX.ext", in the same
// folder so that the last step is a rename, never a copy) and put in the target's place only once it
// is whole; until then, and on any failure, a file that stood there before is left untouched.

#include <QString>

namespace kirrel::host {

class PendingFile {
  public:
    // Reserves the temporary name; throws std::runtime_error when the folder cannot be written.
    explicit PendingFile(const QString& target);
    ~PendingFile(); // removes the temporary file unless it was committed
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    const QString& path() const { return temp_; }
    // Renames the written file over the target; throws std::runtime_error when it is empty or the
    // rename fails.
    void commit();

  private:
    QString target_;
    QString temp_;
    bool committed_ = false;
};

} // namespace kirrel::host
