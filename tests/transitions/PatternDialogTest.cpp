// A pattern dialog from a session script: an iris whose mask overflows, reported while the dialog
// stays usable. Every pattern variant in all four shapes runs with the other dialogs' variants.

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

class PatternDialog : public ScriptTest {
  protected:
    QJsonObject run(const QJsonArray& steps, int w, int h, int frames) {
        const QJsonObject host{{"temp_dir", "tmp"}, {"size", QJsonArray{w, h}}, {"frames", frames}};
        const RunResult r = runScript(
            dir.path(), QJsonDocument(QJsonObject{{"host", host}, {"steps", steps}}).toJson().toStdString());
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return state("end");
    }
    static QJsonObject set(const char* control, const QJsonValue& how, const char* key) {
        return QJsonObject{{"set", QJsonObject{{"control", control}, {key, how}}}};
    }
    static QJsonObject click(const char* control) { return QJsonObject{{"click", control}}; }
};

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
    EXPECT_TRUE(formControl(end, "frmIris", "cmd_Run")["enabled"].toBool()) << "Apply comes back";
    EXPECT_FALSE(end["locked"].toBool());
}

} // namespace
} // namespace kirrel::test
