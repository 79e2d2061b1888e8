#include "exchange/ImportGif.h"

#include "exchange/BatchText.h"
#include "exchange/BitmapReader.h"
#include "exchange/ConverterFiles.h"
#include "exchange/ConverterRun.h"
#include "panel/Numeric.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace kirrel::exchange {

namespace {

QString at(const std::string& temp, const std::string& name) {
    return QString::fromStdString(temp + name);
}

int countFrames(const std::string& temp, const char* extension) {
    int count = 0;
    while (QFileInfo::exists(at(temp, "/gif_frame-" + std::to_string(count) + extension)))
        ++count;
    return count;
}

void removeIfThere(const QString& path) {
    if (QFileInfo::exists(path)) QFile::remove(path);
}

// A runner that could not run the converter at all says why before the import's own message; a
// converter that merely failed on the file is covered by that message.
void reportRunner(Vantry::Vantry_Class& van, ConverterRun& run) {
    const auto failure = run.finish();
    if (failure && failure->kind != "failed") van.Van_MessageBox(failureText(*failure));
}

void failImport(Vantry::Vantry_Class& van, const std::string& temp) {
    removeIfThere(at(temp, "/gif_frame.png"));
    removeIfThere(at(temp, "/gif_frame.bmp"));
    van.Van_MessageBox(kImportFailed);
}

// Requester and the readings that go before it; the values are not used. An import replaces the
// animation, so unsaved work is the host's to ask about before anything runs; keeping it ends the
// import as a cancelled requester does.
std::string askGif(Vantry::Vantry_Class& van) {
    van.Van_GetRBuffer();
    van.Van_GetGBuffer();
    van.Van_GetBBuffer();
    van.Van_BufferHeight();
    van.Van_BufferWidth();
    van.Van_GetTotalFrames();
    std::string in = van.Van_RequestFile_open("Import animated gif", "", "gif(*.gif)|*.gif");
    if (in.empty() || van.Van_ConfirmDiscard() == 2) return {};
    return in;
}

// The paper colour every transparent pixel shows, in every way in.
std::uint32_t paperColour(Vantry::Vantry_Class& van) {
    return static_cast<std::uint32_t>(van.Van_getSecondaryColor());
}

// The animation is named after the file the user chose, never after a working file.
void nameAfter(Vantry::Vantry_Class& van, const std::string& in) {
    van.Van_RenameBuffer(in);
    van.Van_NewFilename(in);
}

void runBatch(ConverterRun& run, const std::string& temp, const char* name,
              const std::vector<BatchLine>& lines, Vantry::Vantry_Class& van, double progressAfterOpen) {
    // The progress is shown as soon as the batch file is open, before its lines are written.
    QFile file(at(temp, std::string("/") + name));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error("Path not found: " + temp + "/" + name);
    van.Van_SetProgress(progressAfterOpen);
    file.write(QByteArray::fromStdString(batchBytes(lines)));
    file.close();
    run.start(name);
    run.waitGone(name);
}

// The exact pixel rectangle of a frame file as three planes with the host's bounds; transparent
// pixels show the paper colour, as they do in the other ways in.
void readFramePicture(const QString& path, int w, int h, std::uint32_t paper, krl::Plane& r, krl::Plane& g,
                      krl::Plane& b) {
    QImageReader reader(path);
    reader.setAutoTransform(false);
    QImage image = reader.read();
    if (image.isNull()) throw std::runtime_error("Invalid picture: " + path.toStdString());
    image = image.convertToFormat(QImage::Format_RGBA8888);
    r = krl::Plane(w, h);
    g = krl::Plane(w, h);
    b = krl::Plane(w, h);
    std::uint8_t* rp = r.data();
    std::uint8_t* gp = g.data();
    std::uint8_t* bp = b.data();
    const int paperRgb[3] = {static_cast<int>(paper & 255), static_cast<int>((paper >> 8) & 255),
                             static_cast<int>((paper >> 16) & 255)};
    auto over = [](int c, int a, int p) {
        return static_cast<std::uint8_t>((c * a + p * (255 - a) + 127) / 255);
    };
    const int cw = std::min(w, image.width());
    const int ch = std::min(h, image.height());
    for (int y = 0; y < ch; ++y) {
        const uchar* src = image.constScanLine(y);
        const std::size_t row = static_cast<std::size_t>(y) * r.cols();
        for (int x = 0; x < cw; ++x) {
            const uchar* px = src + 4 * static_cast<std::size_t>(x);
            rp[row + x] = over(px[0], px[3], paperRgb[0]);
            gp[row + x] = over(px[1], px[3], paperRgb[1]);
            bp[row + x] = over(px[2], px[3], paperRgb[2]);
        }
    }
}

QSize pictureSize(const QString& path) {
    QImageReader reader(path);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > 32767 || size.height() > 32767)
        throw std::runtime_error("Invalid picture: " + path.toStdString());
    return size;
}

// A frame that cannot be read stops the import with a message naming it; the event boundary then
// puts the animation back as it was.
[[noreturn]] void unreadableFrame(int frame, const std::string& in, const std::string& why) {
    throw std::runtime_error("Frame " + std::to_string(frame) + " of " +
                             QFileInfo(QString::fromStdString(in)).fileName().toStdString() +
                             " could not be read (" + why + "); the import was stopped.");
}

// Both ways end alike: the progress cleared, the new animation shown under the file's name, and a
// GIF cut short reported with the whole frames it gave.
void finishImport(Vantry::Vantry_Class& van, const ConverterInput& input, const std::string& in, int count) {
    van.Van_SetProgress(0);
    if (count > 0) {
        van.Van_ShowScrub(0, count);
        nameAfter(van, in);
    }
    van.Van_Refresh();
    if (input.cutShort && count > 0)
        van.Van_ShowStatus(QFileInfo(QString::fromStdString(in)).fileName().toStdString() +
                           " ends early: " + std::to_string(count) + " frames could be read.");
}

} // namespace

void ImportGifDirect(Vantry::Vantry_Class& van) {
    const std::string in = askGif(van);
    if (in.empty()) return;
    const std::uint32_t paper = paperColour(van);
    const std::string temp = van.Van_GetTempDir();
    const std::string app = van.Van_GetAppDir();
    const WorkingFiles working(temp);
    const ConverterInput input = inputForConverter(in, temp);
    {
        ConverterRun run(temp, app);
        runBatch(run, temp, kGifImport01Bat, gifImportDirectBatch(app, temp, input.path), van, 10);
        reportRunner(van, run);
    }
    const int count = countFrames(temp, ".gif");
    van.Van_SetProgress(30);
    if (count < 1) {
        failImport(van, temp);
    } else {
        const QString first = at(temp, "/gif_frame-0.gif");
        QSize size;
        try {
            size = pictureSize(first);
        } catch (const std::exception& e) {
            unreadableFrame(0, in, e.what());
        }
        van.Van_NewBuffer(size.width(), size.height());
        van.Van_CreateAnimAdv(count, 2);
        const int w = van.Van_BufferWidth();
        const int h = van.Van_BufferHeight();
        krl::Plane r, g, b;
        auto read = [&](const QString& path, int frame) {
            try {
                readFramePicture(path, w, h, paper, r, g, b);
            } catch (const std::exception& e) {
                unreadableFrame(frame, in, e.what());
            }
        };
        read(first, 0);
        van.Van_GotoFrame(0);
        van.Van_SetRbuffer(r);
        van.Van_SetGbuffer(g);
        van.Van_SetBbuffer(b);
        removeIfThere(first);
        for (int i = 1; i < count; ++i) {
            const QString path = at(temp, "/gif_frame-" + std::to_string(i) + ".gif");
            read(path, i);
            van.Van_SetRFrame(r, i);
            van.Van_SetGFrame(g, i);
            van.Van_SetBFrame(b, i);
            van.Van_SetProgress(divide(i, count) * 70 + 30);
            removeIfThere(path);
        }
    }
    finishImport(van, input, in, count);
}

// Every frame's bitmap is read and checked before it goes into the host: a frame that is not a
// bitmap of a depth the reader takes stops the import, where this way once passed over every error
// and left the frame blank.
void ImportGifViaPNG(Vantry::Vantry_Class& van) {
    const std::string in = askGif(van);
    if (in.empty()) return;
    const std::uint32_t paper = paperColour(van);
    const std::string temp = van.Van_GetTempDir();
    const std::string app = van.Van_GetAppDir();
    const WorkingFiles working(temp);
    const ConverterInput input = inputForConverter(in, temp);
    {
        ConverterRun run(temp, app);
        runBatch(run, temp, kGifImport01Bat, gifImportPngBatch(app, temp, input.path), van, 10);
        reportRunner(van, run);
    }
    const int count = countFrames(temp, ".png");
    {
        std::vector<BatchLine> lines;
        for (int i = 0; i < count; ++i) {
            std::vector<BatchLine> frameLines = gifImportBitmapLines(app, temp, i);
            std::move(frameLines.begin(), frameLines.end(), std::back_inserter(lines));
            van.Van_SetProgress(divide(i, count) * 30);
        }
        lines.push_back(gifImportBitmapClosing(temp));
        writeBatchFile(temp + "/" + kGifImport02Bat, batchBytes(lines));
        ConverterRun run(temp, app);
        run.start(kGifImport02Bat);
        van.Van_SetProgress(30);
        run.waitGone(kGifImport02Bat);
        if (count > 0)
            reportRunner(van, run);
        else
            run.finish();
    }
    if (count < 1) {
        failImport(van, temp);
    } else {
        for (int i = 0; i < count; ++i) {
            const std::string path = temp + "/gif_frame-" + std::to_string(i) + ".bmp";
            BitmapFile f;
            try {
                f = ReadBitmapFile(path);
            } catch (const std::exception& e) {
                unreadableFrame(i, in, e.what());
            }
            if (f.result < 0) unreadableFrame(i, in, "not a bitmap this import reads");
            putBitmapFrame(van, f, path, i, paper);
            if (i == 0) van.Van_CreateAnimAdv(count, 2);
            if (i > 0) van.Van_SetProgress(divide(i, count) * 70 + 30);
            removeIfThere(QString::fromStdString(path));
        }
    }
    finishImport(van, input, in, count);
}

} // namespace kirrel::exchange
