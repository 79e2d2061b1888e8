#pragma once
// The texts of the converter's batch files. Every line is written the way the command processor is
// fed: a normal line ends with CR LF and is followed by a line holding one CR, so commands stand
// apart; a tight line ends with CR CR LF; a plain line ends with CR LF alone. Paths are joined with
// the platform's separator, so the converter is App + "/convert.exe" and frame files are Temp +
// "/temp" + i + ".bmp". Pure functions: the bytes can be checked apart from any run.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kirrel::exchange {

enum class LineEnd { Separated, Tight, Plain };

struct BatchLine {
    std::string text;
    LineEnd end = LineEnd::Separated;
};

// The bytes of a batch file.
std::string batchBytes(const std::vector<BatchLine>& lines);

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
};

// The wildcard classes that feed the frames to the single-command run in numeric order.
std::string framePattern(int total);

// Per-frame GIF export: one frame's bitmap to GIF, with the primary colour made transparent if given.
std::string gifConversionLine(const std::string& app, const std::string& temp, int frame,
                              const std::optional<Rgb>& transparent);
// Per-frame GIF export: frame 0 starts the output, every later frame is appended to it.
std::string gifAppendLine(const std::string& app, const std::string& temp, const std::string& out, int frame,
                          long long delay, int loops);
std::vector<BatchLine> gifPerFrameBatch(const std::string& temp, const std::vector<std::string>& conversions,
                                        const std::vector<std::string>& appends);

// The single-command run shared by the global GIF export and the MNG export.
std::string gifSingleCommandLine(const std::string& app, const std::string& out, int delay, int loops,
                                 int total);
std::vector<BatchLine> gifSingleCommandBatch(const std::string& temp, const std::string& command);

std::vector<BatchLine> gifImportDirectBatch(const std::string& app, const std::string& temp,
                                            const std::string& in);
std::vector<BatchLine> gifImportPngBatch(const std::string& app, const std::string& temp,
                                         const std::string& in);
// One frame of the second PNG-way batch: its two lines.
std::vector<BatchLine> gifImportBitmapLines(const std::string& app, const std::string& temp, int frame);
BatchLine gifImportBitmapClosing(const std::string& temp);

std::vector<BatchLine> pngConvertBatch(const std::string& app, const std::string& out);

// File names in the temporary folder.
inline constexpr const char* kGifConvertBat = "GifConvert.bat";
inline constexpr const char* kGifImport01Bat = "GifImport01.bat";
inline constexpr const char* kGifImport02Bat = "GifImport02.bat";
inline constexpr const char* kPngConvertBat = "PNGConvert.bat";

} // namespace kirrel::exchange
