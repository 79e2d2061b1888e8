// The six pattern dialogs from session scripts: every variant in all four shapes, their lists and
// captions, and an iris whose mask overflows, reported while the dialog stays usable.

#include "support/Support.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>

namespace kirrel::test {
namespace {

class PatternDialog : public testing::Test {
  protected:
    RunResult run(const QJsonArray& steps, const QJsonObject& host) {
        const QJsonObject script{{"host", host}, {"steps", steps}};
        return runScript(dir.path(), QJsonDocument(script).toJson().toStdString());
    }
    QJsonObject state(const QString& dump) const {
        return readJsonObject(QDir(dir.path()).filePath(dump + "/state.json"));
    }
    static QJsonObject form(const QJsonObject& state, const QString& name) {
        for (const auto& f : state["forms"].toArray())
            if (f.toObject()["name"].toString() == name) return f.toObject();
        return {};
    }
    static QJsonObject control(const QJsonObject& state, const QString& formName, const QString& name) {
        for (const auto& c : form(state, formName)["controls"].toArray())
            if (c.toObject()["name"].toString() == name) return c.toObject();
        return {};
    }
    static QStringList items(const QJsonObject& control) {
        QStringList out;
        for (const auto& i : control["items"].toArray())
            out << i.toString();
        return out;
    }
    void writeSlot(int slot, int n, int w, int h) {
        std::string bytes = int16le({n, w, h});
        bytes.append(static_cast<std::size_t>(n) * 3 * (w + 1) * (h + 1), '\x40');
        writeFile(QDir(dir.path()).filePath(QString("tmp/AnimSlot %1.dat").arg(slot)), bytes);
    }
    static QJsonObject set(const char* control, const QJsonValue& how, const char* key) {
        return QJsonObject{{"set", QJsonObject{{"control", control}, {key, how}}}};
    }
    QTemporaryDir dir;
};

struct PatternForm {
    const char* plugin;
    const char* form;
    const char* caption;
    const char* variantList;
    std::vector<const char*> variants;
};

class EveryPatternVariant : public PatternDialog, public testing::WithParamInterface<PatternForm> {};

TEST_P(EveryPatternVariant, RunsInAllFourShapes) {
    const PatternForm& c = GetParam();
    writeSlot(0, 6, 16, 12);
    QJsonArray steps = {QJsonObject{{"open", c.plugin}}};
    int expectedTotal = 5;
    int expectedMessages = 0;
    for (std::size_t v = 0; v < c.variants.size(); ++v) {
        steps.append(set(c.variantList, static_cast<int>(v), "index"));
        for (int direction = 0; direction < 2; ++direction) {
            steps.append(set("cboTransitions", "Swap", "text"));
            steps.append(QJsonObject{{"click", "cmd_Run"}});
            steps.append(set("cboTransitions", "Stored Animation #1", "text"));
            steps.append(QJsonObject{{"click", "cmd_Run"}});
            // After a splice that lengthened the animation the next Apply only tells so.
            steps.append(QJsonObject{{"click", "cmd_Run"}});
            steps.append(QJsonObject{{"click", "lblToggle"}});
        }
        // ToStored from the first Start offered: Start + 6 frames; FromStored from End 2: 3 in front.
        const int start = expectedTotal >= 6 ? expectedTotal - 6 : 0;
        if (start + 6 != expectedTotal) ++expectedMessages;
        expectedTotal = start + 6 + (6 - 3);
        ++expectedMessages;
    }
    steps.append(QJsonObject{{"dump", "end"}});
    const RunResult r = run(steps, {{"temp_dir", "tmp"}, {"size", QJsonArray{16, 12}}, {"frames", 5}});
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject end = state("end");
    EXPECT_EQ(end["total_frames"].toInt(), expectedTotal);
    const auto msgs = dialogTexts(end);
    EXPECT_EQ(std::count(msgs.begin(), msgs.end(), "Animation Size Changed. Settings updated."),
              expectedMessages);
    EXPECT_EQ(msgs.size(), static_cast<std::size_t>(expectedMessages)) << "no error and no refusal";
    EXPECT_FALSE(end["locked"].toBool());

    EXPECT_EQ(form(end, c.form)["caption"].toString(), c.caption);
    QStringList variants;
    for (const char* v : c.variants)
        variants << v;
    EXPECT_EQ(items(control(end, c.form, c.variantList)), variants);
    EXPECT_EQ(items(control(end, c.form, "cboTransitions")),
              (QStringList{"Swap", "Primary Color", "GreyScale", "Negative", "Red Channel", "Green Channel",
                           "Blue Channel", "Red & Blue Channels", "Red & Green Channels",
                           "Green & Blue Channels", "Stored Animation #1", "Stored Animation #2",
                           "Stored Animation #3", "Stored Animation #4"}));
    EXPECT_EQ(control(end, c.form, "PreviewBox").isEmpty(), std::string(c.form) != "frmCircles");
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, EveryPatternVariant,
    testing::Values(
        PatternForm{"Blinds",
                    "frmBlinds",
                    "Kirrel-Blinds",
                    "cboBlindsOptions",
                    {"Horizontal Blinds", "Vertical Blinds"}},
        PatternForm{"Diamonds",
                    "frmDiamonds",
                    "Kirrel - Diamonds",
                    "cboDiamondsOptions",
                    {"Diamond Open", "Diamond Close"}},
        PatternForm{
            "Iris", "frmIris", "Kirrel - Iris Transitions", "cboIrisOptions", {"Iris Open", "Iris Close"}},
        PatternForm{"Lines",
                    "frmLines",
                    "Kirrel - Lines",
                    "cboLineOptions",
                    {"Lines to Left", "Lines to Right", "Lines Up", "Lines Down"}},
        PatternForm{"X Transition", "frmX", "Kirrel - X Transitons", "cboXOptions", {"X Open", "X Close"}},
        PatternForm{"Circles",
                    "frmCircles",
                    "Kirrel - Circle Transition",
                    "cboCircleOptions",
                    {"Circle Open", "Circle Close"}}),
    [](const testing::TestParamInfo<PatternForm>& i) { return std::string(i.param.form); });

TEST_F(PatternDialog, AnEmptySlotIsRefusedWithoutAFullStop) {
    const RunResult r =
        run({QJsonObject{{"open", "Circles"}}, set("cboTransitions", "Stored Animation #4", "text"),
             QJsonObject{{"click", "cmd_Run"}}, QJsonObject{{"dump", "empty"}}},
            {{"temp_dir", "tmp"}, {"size", QJsonArray{16, 12}}, {"frames", 5}});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("empty")), (std::vector<std::string>{"Slot Empty"}));
}

TEST_F(PatternDialog, AnIrisThatOverflowsIsReportedAndTheDialogGoesOn) {
    // Bounds 5 by 5: the centres round down to 2 and the far corner lies 1.5 out on both axes.
    const RunResult r = run({QJsonObject{{"open", "Iris"}}, QJsonObject{{"click", "cmd_Run"}},
                             QJsonObject{{"dump", "failed"}}, set("cboIrisOptions", 1, "index"),
                             QJsonObject{{"click", "lblToggle"}}, QJsonObject{{"click", "cmd_Run"}},
                             QJsonObject{{"close", "frmIris"}}, QJsonObject{{"open", "Diamonds"}},
                             QJsonObject{{"click", "cmd_Run"}}, QJsonObject{{"dump", "after"}}},
                            {{"temp_dir", "tmp"}, {"size", QJsonArray{5, 5}}, {"frames", 4}});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject failed = state("failed");
    const QJsonArray boxes = failed["dialogs"].toArray();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].toObject()["kind"].toString(), "error");
    EXPECT_EQ(boxes[0].toObject()["text"].toString(), "Overflow");
    EXPECT_TRUE(control(failed, "frmIris", "cmd_Run")["enabled"].toBool()) << "Apply comes back";

    const QJsonObject after = state("after");
    EXPECT_EQ(dialogTexts(after), (std::vector<std::string>{"Overflow", "Overflow"}))
        << "the second Iris fails the same way; the Diamonds run cleanly";
    EXPECT_FALSE(after["locked"].toBool());
}

} // namespace
} // namespace kirrel::test
