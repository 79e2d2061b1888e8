// What a "dump" step writes: the .dat files byte for byte, one PNG per frame of W x H pixels, and
// state.json with every field that later tests compare.

#include "support/Fixtures.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

namespace kirrel::test {
namespace {

class DumpLayout : public ScriptTest, public ::testing::WithParamInterface<std::tuple<int, int, int>> {};

TEST_P(DumpLayout, FilesHoldTheirHeadersAndPlanes) {
    const auto [w, h, frames] = GetParam();
    const RunResult r = run(QString::asprintf(R"({"host": {"temp_dir": "tmp", "size": [%d, %d], "frames": %d},
        "steps": [{"dump": "out"}]})",
                                              w, h, frames)
                                .toStdString());
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // A fresh picture is white and a fresh alpha opaque; a still picture is one set of planes.
    const std::string plane(static_cast<std::size_t>(w + 1) * (h + 1), '\xFF');
    const int sets = std::max(frames, 1);
    EXPECT_EQ(readFile(at("out/animation.dat")),
              int16le({frames, w, h}) + std::string(3 * sets * plane.size(), '\xFF'));
    const std::string swap = readFile(at("out/swap.dat"));
    EXPECT_EQ(swap.size(), 4 + 3 * plane.size());
    EXPECT_EQ(swap.substr(0, 4), int16le({w, h}));
    EXPECT_EQ(readFile(at("out/alpha.dat")), int16le({w, h}) + plane);

    const QStringList pngs = QDir(at("out/frames")).entryList({"*.png"}, QDir::Files, QDir::Name);
    ASSERT_EQ(pngs.size(), sets);
    EXPECT_EQ(pngs.front(), "0000.png");
    const QImage first(at("out/frames/0000.png"));
    EXPECT_EQ(first.size(), QSize(w, h));
    EXPECT_EQ(first.pixel(w - 1, h - 1), qRgb(255, 255, 255));
}

INSTANTIATE_TEST_SUITE_P(Sizes, DumpLayout,
                         ::testing::Values(std::tuple{8, 5, 4}, std::tuple{4, 2, 0}, std::tuple{1, 1, 2},
                                           std::tuple{7, 3, 11}));

using StateJson = ScriptTest;

TEST_F(StateJson, RecordsTheHostAndEveryBox) {
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "size": [6, 4], "frames": 5,
        "delays": [40, 50, 60, 70, 80], "primary": [1, 2, 3], "secondary": [4, 5, 6], "current_frame": 2, "layer_opacity": 128},
      "steps": [{"host": "Van_Lock"}, {"host": "Van_ChangePointer", "args": [11]},
        {"host": "Van_SetProgress", "args": [40.5]}, {"host": "van_status", "args": [10]},
        {"host": "Van_ShowScrub", "args": [3, 5]}, {"host": "Van_MessageBox", "args": ["Hello\nWorld"]},
        {"answer": [{"question": 2}, {"value": -1}, {"file": ""}, {"file": "sub/a.msk"}]},
        {"host": "Van_QuestionBox", "args": ["Sure?"]}, {"host": "Van_ValueBox", "args": ["Count", 1, 9]},
        {"host": "Van_RequestFile_open", "args": ["Open", "", "msk(*.msk)|*.msk"]},
        {"host": "Van_RequestFile_save", "args": ["Save", "", "msk(*.msk)|*.msk"]},
        {"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject s = state("out");
    std::string want = R"({"total_frames": 5, "current_frame": 2, "width": 6, "height": 4,
        "primary": [1, 2, 3], "secondary": [4, 5, 6], "locked": true, "pointer": 11, "progress": 40.5,
        "status_open": true, "scrub": [3, 5], "layers": 1, "delays": [40, 50, 60, 70, 80], "layer_opacity": 128, "dialogs": [
        {"kind": "message", "text": "Hello\nWorld", "title": "Kirrel", "answer": null},
        {"kind": "question", "text": "Sure?", "title": "Kirrel", "answer": 2},
        {"kind": "value", "text": "Count", "title": "Kirrel", "answer": -1},
        {"kind": "file_open", "text": "Open", "title": "Kirrel", "answer": ""},
        {"kind": "file_save", "text": "Save", "title": "Kirrel", "answer": "PICKED"}]})";
    want.replace(want.find("PICKED"), 6, QDir::cleanPath(at("sub/a.msk")).toStdString());
    const QJsonObject expected = QJsonDocument::fromJson(QByteArray::fromStdString(want)).object();
    ASSERT_FALSE(expected.isEmpty());
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(s[it.key()], it.value()) << it.key().toStdString();

    const QJsonValue mainfrm = s["forms"].toArray().first();
    EXPECT_EQ(mainfrm["name"].toString(), "Mainfrm");
    EXPECT_TRUE(mainfrm["visible"].toBool());
    EXPECT_TRUE(mainfrm.toObject().contains("caption"));
    const QJsonObject list1 = formControl(s, "Mainfrm", "List1");
    EXPECT_EQ(list1["kind"].toString(), "list");
    EXPECT_FALSE(list1["items"].toArray().isEmpty());
    for (const char* key : {"text", "index", "value", "enabled", "visible"})
        EXPECT_TRUE(list1.contains(key)) << key;
}

} // namespace
} // namespace kirrel::test
