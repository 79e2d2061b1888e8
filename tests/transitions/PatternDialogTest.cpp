// The six pattern dialogs from session scripts: every variant in all four shapes with their exact
// lists and captions, and an iris whose mask overflows, reported while the dialog stays usable.

#include "support/Support.h"
#include "transitions/EveryShapeScript.h"

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
    QJsonObject run(const QJsonArray& steps, int w, int h, int frames) {
        const QJsonObject host{{"temp_dir", "tmp"}, {"size", QJsonArray{w, h}}, {"frames", frames}};
        const RunResult r = runScript(
            dir.path(), QJsonDocument(QJsonObject{{"host", host}, {"steps", steps}}).toJson().toStdString());
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return readJsonObject(QDir(dir.path()).filePath("end/state.json"));
    }
    static QJsonObject find(const QJsonValue& list, const QString& name) {
        for (const auto& v : list.toArray())
            if (v.toObject()["name"].toString() == name) return v.toObject();
        return {};
    }
    static QJsonObject control(const QJsonObject& state, const QString& form, const QString& name) {
        return find(find(state["forms"], form)["controls"], name);
    }
    static QJsonObject set(const char* control, const QJsonValue& how, const char* key) {
        return QJsonObject{{"set", QJsonObject{{"control", control}, {key, how}}}};
    }
    static QJsonObject click(const char* control) { return QJsonObject{{"click", control}}; }
    QTemporaryDir dir;
};

struct PatternForm {
    const char* plugin;
    const char* form;
    const char* caption;
    const char* variantList;
    const char* variants; // separated by '|'
};

class EveryPatternVariant : public PatternDialog, public testing::WithParamInterface<PatternForm> {};

TEST_P(EveryPatternVariant, RunsInAllFourShapes) {
    const PatternForm& c = GetParam();
    const QStringList variants = QString(c.variants).split('|');
    const EveryShapeRun r =
        playEveryShape(dir.path(), {c.plugin, c.form, c.variantList, static_cast<int>(variants.size())});
    expectEveryShapeRan(r);
    EXPECT_EQ(formCaption(r.end, c.form), c.caption);
    EXPECT_EQ(listItems(r.end, c.form, c.variantList), variants);
    EXPECT_EQ(listItems(r.end, c.form, "cboTransitions"),
              QString("Swap|Primary Color|GreyScale|Negative|Red Channel|Green Channel|Blue Channel|"
                      "Red & Blue Channels|Red & Green Channels|Green & Blue Channels|Stored Animation #1|"
                      "Stored Animation #2|Stored Animation #3|Stored Animation #4")
                  .split('|'));
    EXPECT_EQ(formControl(r.end, c.form, "PreviewBox").isEmpty(), std::string(c.form) != "frmCircles");
}

INSTANTIATE_TEST_SUITE_P(Dialogs, EveryPatternVariant,
                         testing::Values(PatternForm{"Blinds", "frmBlinds", "Kirrel-Blinds",
                                                     "cboBlindsOptions", "Horizontal Blinds|Vertical Blinds"},
                                         PatternForm{"Diamonds", "frmDiamonds", "Kirrel - Diamonds",
                                                     "cboDiamondsOptions", "Diamond Open|Diamond Close"},
                                         PatternForm{"Iris", "frmIris", "Kirrel - Iris Transitions",
                                                     "cboIrisOptions", "Iris Open|Iris Close"},
                                         PatternForm{"Lines", "frmLines", "Kirrel - Lines", "cboLineOptions",
                                                     "Lines to Left|Lines to Right|Lines Up|Lines Down"},
                                         PatternForm{"X Transition", "frmX", "Kirrel - X Transitons",
                                                     "cboXOptions", "X Open|X Close"},
                                         PatternForm{"Circles", "frmCircles", "Kirrel - Circle Transition",
                                                     "cboCircleOptions", "Circle Open|Circle Close"}),
                         [](const testing::TestParamInfo<PatternForm>& i) {
                             return std::string(i.param.form);
                         });

TEST_F(PatternDialog, AnIrisThatOverflowsIsReportedAndTheDialogGoesOn) {
    // Bounds 5 by 5: the centres round down to 2 and the far corner lies 1.5 out on both axes.
    const QJsonObject end =
        run({QJsonObject{{"open", "Iris"}}, click("cmd_Run"), set("cboIrisOptions", 1, "index"),
             click("lblToggle"), click("cmd_Run"), QJsonObject{{"open", "Diamonds"}}, click("cmd_Run"),
             QJsonObject{{"dump", "end"}}},
            5, 5, 4);
    const QJsonArray boxes = end["dialogs"].toArray();
    ASSERT_EQ(boxes.size(), 2) << "each Iris run fails alike; the Diamonds run cleanly";
    for (const auto& box : boxes) {
        EXPECT_EQ(box.toObject()["kind"].toString(), "error");
        EXPECT_EQ(box.toObject()["text"].toString(), "Overflow");
    }
    EXPECT_TRUE(control(end, "frmIris", "cmd_Run")["enabled"].toBool()) << "Apply comes back";
    EXPECT_FALSE(end["locked"].toBool());
}

} // namespace
} // namespace kirrel::test
