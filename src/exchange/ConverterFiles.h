#pragma once
// The files around a converter run, so that a run that fails, is cancelled or is interrupted loses
// nothing and leaves nothing behind:
// - the working files of every run in the temporary folder are cleared before the run, so a stale
//   frame of an earlier run is never taken in through a wildcard, and again however the run ends;
// - an output is written by the converter under a temporary name beside the user's file, checked
//   (signature, size, frame count) and only then renamed over it, so a file that stood there stays
//   intact when the export fails;
// - a file the user named reaches the converter as exactly that file: a name that the batch line
//   cannot hold or that the converter would read as a pattern, an option or a format ("%d", "[1]",
//   "*", "?", a quote, a line feed, "gif:", a leading '-') is given to it as a plain-named link.

#include <optional>
#include <string>

namespace kirrel::exchange {

// Removes the converter's working files from the temporary folder (frame bitmaps and GIFs, the
// import's frame files, the layer bitmaps, the batch files and their failure markers, and the folder
// of lines that ran ahead, left by a runner that was ended).
void clearWorkingFiles(const std::string& temp);

// Clears the working files now and again when it goes, on every way out of the run.
class WorkingFiles {
  public:
    explicit WorkingFiles(std::string temp);
    ~WorkingFiles();
    WorkingFiles(const WorkingFiles&) = delete;
    WorkingFiles& operator=(const WorkingFiles&) = delete;

  private:
    std::string temp_;
};

// Whether a path written into a batch line reaches the converter as exactly that file.
bool plainForConverter(const std::string& path);

// What an output must be to be taken.
struct OutputCheck {
    enum class Kind { Gif, Mng, Png } kind = Kind::Gif;
    int width = 0, height = 0;
    int frames = -1; // GIF only; -1 for any
};

// Why a file is not what the check asks for; nothing when it is.
std::optional<std::string> checkOutput(const std::string& path, const OutputCheck& check);

class OutputStage {
  public:
    OutputStage(std::string finalPath, OutputCheck::Kind kind);
    ~OutputStage(); // the staged file goes unless it was committed
    OutputStage(const OutputStage&) = delete;
    OutputStage& operator=(const OutputStage&) = delete;

    // The name the batch line holds (the user's own when it is plain) and the file the converter
    // writes instead.
    const std::string& inBatch() const { return inBatch_; }
    const std::string& staged() const { return staged_; }
    // Checks the staged file and renames it over the user's; why not, when it does not check out
    // (then nothing under the user's name has changed).
    std::optional<std::string> commit(const OutputCheck& check);

  private:
    std::string final_, inBatch_, staged_;
    bool committed_ = false;
};

// The GIF the converter reads for an import: the user's file itself when its name is plain and the
// file whole, else a plain-named link in the temporary folder, or, for a file cut short, a copy of
// its whole frames there (the converter would refuse the whole file for its last frame).
struct ConverterInput {
    std::string path;
    int wholeFrames = -1; // how many frames the file holds whole; -1 when it is no GIF at all
    bool cutShort = false;
};
ConverterInput inputForConverter(const std::string& file, const std::string& temp);

} // namespace kirrel::exchange
