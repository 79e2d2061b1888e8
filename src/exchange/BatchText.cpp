#include "exchange/BatchText.h"

namespace kirrel::exchange {

namespace {
const std::string Q = "\"";

std::string quoted(const std::string& s) {
    return Q + s + Q;
}

std::string colour(const Rgb& c) {
    return "rgb(" + std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b) + ") ";
}
} // namespace

std::string batchBytes(const std::vector<BatchLine>& lines) {
    std::string out;
    for (const BatchLine& l : lines) {
        out += l.text;
        switch (l.end) {
        case LineEnd::Separated:
            out += "\r\n\r\r\n";
            break;
        case LineEnd::Tight:
            out += "\r\r\n";
            break;
        case LineEnd::Plain:
            out += "\r\n";
            break;
        }
    }
    return out;
}

std::string framePattern(int total) {
    if (total < 11) return " temp?.bmp ";
    if (total <= 100) return " temp?.bmp temp??.bmp ";
    // The classes grow with the count, one digit more for every tenfold, so that every frame is
    // taken: three classes alone would stop at frame 999 and drop the rest without a word.
    std::string pattern = " temp?.bmp temp??.bmp temp???.bmp ";
    for (long long reach = 1000, digits = 4; total > reach; reach *= 10, ++digits)
        pattern += "temp" + std::string(static_cast<std::size_t>(digits), '?') + ".bmp ";
    return pattern;
}

std::string gifConversionLine(const std::string& app, const std::string& temp, int frame,
                              const std::optional<Rgb>& transparent) {
    const std::string i = std::to_string(frame);
    // The blank inside the program's quotes is the way these lines have always been written.
    std::string line = Q + app + "/convert.exe " + Q + " " + quoted(temp + "/temp" + i + ".bmp");
    if (transparent)
        line += " -background " + colour(*transparent) + " -transparent " + colour(*transparent);
    else
        line += " ";
    return line + quoted(temp + "/temp" + i + ".gif");
}

std::string gifAppendLine(const std::string& app, const std::string& temp, const std::string& out, int frame,
                          long long delay, int loops) {
    const std::string program = quoted(app + "/convert.exe");
    const std::string timing =
        " -delay " + std::to_string(delay) + " -loop " + std::to_string(loops) + " +page ";
    const std::string gif = quoted(temp + "/temp" + std::to_string(frame) + ".gif");
    if (frame == 0) return program + " -dispose previous" + timing + gif + " " + quoted(out);
    return program + " -dispose previous " + quoted(out) + timing + gif + " " + quoted(out);
}

std::vector<BatchLine> gifPerFrameBatch(const std::string& temp, const std::vector<std::string>& conversions,
                                        const std::vector<std::string>& appends) {
    std::vector<BatchLine> lines;
    for (std::size_t i = 0; i < conversions.size() && i < appends.size(); ++i) {
        lines.push_back({conversions[i]});
        lines.push_back({appends[i]});
    }
    lines.push_back({"cd " + temp});
    lines.push_back({"del temp*.gif"});
    lines.push_back({"del temp*.bmp"});
    lines.push_back({std::string("del ") + kGifConvertBat});
    return lines;
}

std::string gifSingleCommandLine(const std::string& app, const std::string& out, int delay, int loops,
                                 int total) {
    return quoted(app + "/convert.exe") + " -delay " + std::to_string(delay) + framePattern(total) +
           "-adjoin -loop " + std::to_string(loops) + " " + quoted(out);
}

std::vector<BatchLine> gifSingleCommandBatch(const std::string& temp, const std::string& command) {
    return {{temp.substr(0, 2), LineEnd::Tight},
            {"cd " + temp, LineEnd::Tight},
            {command},
            {"del temp*.bmp"},
            {std::string("del ") + kGifConvertBat}};
}

std::vector<BatchLine> gifImportDirectBatch(const std::string& app, const std::string& temp,
                                            const std::string& in) {
    // The input is named before -coalesce: written after it, as the line once stood, today's
    // converter reads the option before any picture is loaded and leaves partial frames uncoalesced.
    return {{quoted(app + "/convert.exe") + " " + quoted(in) + " " + " -coalesce +repage +adjoin -depth 24 " +
             quoted(temp + "/gif_frame.gif")},
            {"del " + quoted(temp + "/" + kGifImport01Bat)}};
}

std::vector<BatchLine> gifImportPngBatch(const std::string& app, const std::string& temp,
                                         const std::string& in) {
    const std::string program = quoted(app + "/convert.exe") + " ";
    const std::string anim = quoted(temp + "/temp_anim.gif");
    return {{program + " -coalesce " + quoted(in) + " " + anim, LineEnd::Plain},
            {program + " +repage +adjoin " + anim + " png24:" + quoted(temp + "/gif_frame.png")},
            {"del " + anim, LineEnd::Plain},
            {"del " + quoted(temp + "/" + kGifImport01Bat)}};
}

std::vector<BatchLine> gifImportBitmapLines(const std::string& app, const std::string& temp, int frame) {
    const std::string stem = temp + "/gif_frame-" + std::to_string(frame);
    return {{quoted(app + "/convert.exe") + " " + quoted(stem + ".png") + " -compress none " +
                 quoted(stem + ".bmp"),
             LineEnd::Plain},
            {"del " + quoted(stem + ".png")}};
}

BatchLine gifImportBitmapClosing(const std::string& temp) {
    return {"del " + quoted(temp + "/" + kGifImport02Bat)};
}

std::vector<BatchLine> pngConvertBatch(const std::string& app, const std::string& out) {
    return {{quoted(app + "/convert.exe") + " png_main.bmp png_mask.bmp -compose copyopacity -composite " +
             quoted(out)},
            {"del png_main.bmp"},
            {"del png_mask.bmp"},
            {std::string("del ") + kPngConvertBat}};
}

} // namespace kirrel::exchange
