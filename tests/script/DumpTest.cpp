// What a "dump" step writes: the .dat files byte for byte, one PNG per frame of W x H pixels, and
// state.json with every field that later tests compare.

#include "support/Support.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

namespace kirrel::test {
namespace {

struct DumpCase {
    int w, h, frames;
};

void PrintTo(const DumpCase& c, std::ostream* os) {
    *os << c.w << "x" << c.h << "x" << c.frames;
}

class DumpLayout : public ::testing::TestWithParam<DumpCase> {};

TEST_P(DumpLayout, FilesHoldTheirHeadersAndPlanes) {
    const DumpCase c = GetParam();
    QTemporaryDir dir;
    const RunResult r =
        runScript(dir.path(), R"({"host": {"temp_dir": "tmp", "size": [)" + std::to_string(c.w) + ", " +
                                  std::to_string(c.h) + R"(], "frames": )" + std::to_string(c.frames) +
                                  R"(}, "steps": [{"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QDir out(QDir(dir.path()).filePath("out"));
    const std::size_t plane = static_cast<std::size_t>(c.w + 1) * (c.h + 1);
    const std::size_t sets = std::max(c.frames, 1);

    const std::string anim = readFile(out.filePath("animation.dat"));
    ASSERT_EQ(anim.size(), 6 + sets * 3 * plane);
    EXPECT_EQ(anim.substr(0, 6), int16le({c.frames, c.w, c.h}));
    EXPECT_EQ(anim.substr(6), std::string(sets * 3 * plane, '\xFF')) << "a fresh picture is white";

    const std::string swap = readFile(out.filePath("swap.dat"));
    ASSERT_EQ(swap.size(), 4 + 3 * plane);
    EXPECT_EQ(swap.substr(0, 4), int16le({c.w, c.h}));
    const std::string alpha = readFile(out.filePath("alpha.dat"));
    EXPECT_EQ(alpha, int16le({c.w, c.h}) + std::string(plane, '\xFF')) << "fresh alpha is opaque";

    const QStringList pngs = QDir(out.filePath("frames")).entryList({"*.png"}, QDir::Files, QDir::Name);
    ASSERT_EQ(static_cast<std::size_t>(pngs.size()), sets);
    EXPECT_EQ(pngs.front(), "0000.png");
    const QImage first(out.filePath("frames/0000.png"));
    EXPECT_EQ(first.width(), c.w);
    EXPECT_EQ(first.height(), c.h);
    EXPECT_EQ(first.pixel(c.w - 1, c.h - 1), qRgb(255, 255, 255));
}

INSTANTIATE_TEST_SUITE_P(Sizes, DumpLayout,
                         ::testing::Values(DumpCase{8, 5, 4}, DumpCase{4, 2, 0}, DumpCase{1, 1, 2},
                                           DumpCase{7, 3, 11}));

QJsonObject field(const QJsonArray& list, const QString& name) {
    for (const QJsonValue& v : list)
        if (v.toObject()["name"].toString() == name) return v.toObject();
    return {};
}

TEST(StateJson, RecordsTheHostAndEveryBox) {
    QTemporaryDir dir;
    const RunResult r = runScript(dir.path(), R"({"host": {"temp_dir": "tmp", "size": [6, 4], "frames": 5,
        "primary": [1, 2, 3], "secondary": [4, 5, 6], "current_frame": 2, "layer_opacity": 128},
      "steps": [{"host": "Van_Lock"}, {"host": "Van_ChangePointer", "args": [11]},
        {"host": "Van_SetProgress", "args": [40.5]}, {"host": "van_status", "args": [10]},
        {"host": "Van_ShowScrub", "args": [3, 5]}, {"host": "Van_MessageBox", "args": ["Hello\nWorld"]},
        {"answer": [{"question": 2}, {"value": -1}, {"file": ""}, {"file": "sub/a.msk"}]},
        {"host": "Van_QuestionBox", "args": ["Sure?"]}, {"host": "Van_ValueBox", "args": ["Count", 1, 9]},
        {"host": "Van_RequestFile_open", "args": ["Open", "", "msk(*.msk)|*.msk"]},
        {"host": "Van_RequestFile_save", "args": ["Save", "", "msk(*.msk)|*.msk"]},
        {"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject s = readJsonObject(QDir(dir.path()).filePath("out/state.json"));
    ASSERT_FALSE(s.isEmpty());
    std::string want = R"({"total_frames": 5, "current_frame": 2, "width": 6, "height": 4,
        "primary": [1, 2, 3], "secondary": [4, 5, 6], "locked": true, "pointer": 11, "progress": 40.5,
        "status_open": true, "scrub": [3, 5], "layers": 1, "layer_opacity": 128, "dialogs": [
        {"kind": "message", "text": "Hello\nWorld", "title": "Kirrel", "answer": null},
        {"kind": "question", "text": "Sure?", "title": "Kirrel", "answer": 2},
        {"kind": "value", "text": "Count", "title": "Kirrel", "answer": -1},
        {"kind": "file_open", "text": "Open", "title": "Kirrel", "answer": ""},
        {"kind": "file_save", "text": "Save", "title": "Kirrel", "answer": "PICKED"}]})";
    want.replace(want.find("PICKED"), 6,
                 QDir::cleanPath(QDir(dir.path()).filePath("sub/a.msk")).toStdString());
    const QJsonObject expected = QJsonDocument::fromJson(QByteArray::fromStdString(want)).object();
    ASSERT_FALSE(expected.isEmpty());
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(s[it.key()], it.value()) << it.key().toStdString();

    const QJsonObject mainfrm = field(s["forms"].toArray(), "Mainfrm");
    ASSERT_FALSE(mainfrm.isEmpty());
    EXPECT_TRUE(mainfrm["visible"].toBool());
    EXPECT_TRUE(mainfrm.contains("caption"));
    const QJsonObject list1 = field(mainfrm["controls"].toArray(), "List1");
    EXPECT_EQ(list1["kind"].toString(), "list");
    EXPECT_FALSE(list1["items"].toArray().isEmpty());
    for (const char* key : {"text", "index", "value", "enabled", "visible"})
        EXPECT_TRUE(list1.contains(key)) << key;
}

} // namespace
} // namespace kirrel::test
