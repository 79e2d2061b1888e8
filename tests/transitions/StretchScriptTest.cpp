// The Stretch / Squeeze dialog through a session script of the kirrel executable: its lists, its
// words for an empty slot, and every one of its eighteen options in all four shapes.

#include "support/Support.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>

namespace kirrel::test {
namespace {

class StretchScript : public testing::Test {
  protected:
    QJsonObject run(const QJsonArray& steps) {
        const QJsonObject script{
            {"host", QJsonObject{{"temp_dir", "tmp"}, {"size", QJsonArray{16, 12}}, {"frames", 5}}},
            {"steps", steps}};
        const RunResult r = runScript(dir.path(), QJsonDocument(script).toJson().toStdString());
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return readJsonObject(QDir(dir.path()).filePath("end/state.json"));
    }
    static QJsonObject control(const QJsonObject& state, const QString& name) {
        for (const auto& f : state["forms"].toArray())
            if (f.toObject()["name"].toString() == "frmStretches")
                for (const auto& c : f.toObject()["controls"].toArray())
                    if (c.toObject()["name"].toString() == name) return c.toObject();
        return {};
    }
    static QStringList items(const QJsonObject& control) {
        QStringList out;
        for (const auto& i : control["items"].toArray())
            out << i.toString();
        return out;
    }
    static QJsonObject set(const char* control, const QJsonValue& value, const char* how) {
        return QJsonObject{{"set", QJsonObject{{"control", control}, {how, value}}}};
    }
    // A slot file of n flat frames of bounds w, h in the script's temporary folder.
    void writeSlot(int slot, int n, int w, int h) {
        std::string bytes = int16le({n, w, h});
        bytes.append(static_cast<std::size_t>(n) * 3 * (w + 1) * (h + 1), '\x40');
        writeFile(QDir(dir.path()).filePath(QString("tmp/AnimSlot %1.dat").arg(slot)), bytes);
    }
    QTemporaryDir dir;
};

TEST_F(StretchScript, EveryOptionRunsInAllFourShapes) {
    writeSlot(0, 6, 20, 9);
    // An empty slot first: refused with a full stop.
    QJsonArray steps = {QJsonObject{{"open", "Stretch/Squeeze"}},
                        set("cboTransitions", "Stored Animation #3", "text"),
                        QJsonObject{{"click", "cmd_Run"}}};
    int expectedTotal = 5, expectedTold = 0;
    for (int option = 0; option < 18; ++option) {
        steps.append(set("cboStretchOptions", option, "index"));
        for (int direction = 0; direction < 2; ++direction) {
            for (const char* source : {"Swap", "Primary Color"}) {
                steps.append(set("cboTransitions", source, "text"));
                steps.append(QJsonObject{{"click", "cmd_Run"}});
            }
            steps.append(set("cboTransitions", "Stored Animation #1", "text"));
            // When the splice has lengthened the animation the next Apply only tells so; otherwise it
            // splices once more, to the same length.
            steps.append(QJsonObject{{"click", "cmd_Run"}});
            steps.append(QJsonObject{{"click", "cmd_Run"}});
            steps.append(QJsonObject{{"click", "lblToggle"}});
        }
        // ToStored from the first Start offered (N - 6, or 0 when the slot is longer): Start + 6
        // frames. FromStored from the first End offered (2): 6 - 3 frames go in front.
        const int start = expectedTotal >= 6 ? expectedTotal - 6 : 0;
        if (start + 6 != expectedTotal) ++expectedTold;
        expectedTotal = start + 6 + (6 - 3);
        ++expectedTold;
    }
    steps.append(QJsonObject{{"dump", "end"}});
    const QJsonObject end = run(steps);
    EXPECT_EQ(end["total_frames"].toInt(), expectedTotal);
    const auto texts = dialogTexts(end);
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.front(), "Slot Empty.");
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Animation Size Changed. Settings updated."),
              expectedTold);
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(expectedTold) + 1)
        << "no other box: no refusal, no error";
    EXPECT_EQ(items(control(end, "cboTransitions")),
              (QStringList{"Swap", "Primary Color", "Stored Animation #1", "Stored Animation #2",
                           "Stored Animation #3", "Stored Animation #4"}));
    const QStringList options = items(control(end, "cboStretchOptions"));
    ASSERT_EQ(options.size(), 18);
    EXPECT_EQ(options[4], "Stretch Horizontally From Center");
    EXPECT_EQ(options.back(), "Squeeze Vertically To Center");
    const auto forms = end["forms"].toArray();
    EXPECT_TRUE(std::any_of(forms.begin(), forms.end(), [](const QJsonValue& f) {
        return f.toObject()["caption"].toString() == "Kirrel-Stretch / Squeeze";
    }));
    EXPECT_FALSE(end["locked"].toBool());
}

} // namespace
} // namespace kirrel::test
