// The Stored Animations panel as a user meets it, through session scripts of the kirrel executable:
// every question and refusal, and a full round of filling, loading and clearing the four slots.

#include "host/AnimationFiles.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

namespace kirrel::test {
namespace {

class StoredScript : public ScriptTest {
  protected:
    bool exists(const QString& rel) const { return QFile::exists(at(rel)); }
    static QJsonObject form(const QJsonObject& state, const QString& name) {
        for (const auto& f : state["forms"].toArray())
            if (f.toObject()["name"].toString() == name) return f.toObject();
        return {};
    }
    // The dialog log as "kind: text -> answer" lines.
    static std::vector<std::string> dialogs(const QJsonObject& state) {
        std::vector<std::string> out;
        for (const auto& d : state["dialogs"].toArray()) {
            const QJsonObject o = d.toObject();
            std::string line = o["kind"].toString().toStdString() + ": " + o["text"].toString().toStdString();
            if (!o["answer"].isNull()) line += " -> " + std::to_string(o["answer"].toInt());
            out.push_back(line);
        }
        return out;
    }
};

constexpr const char* kOverwriteSlot =
    "question: \nThis will overwrite the animation saved in this slot!\n\nProceed?";
constexpr const char* kOverwriteBuffer = "question: \nThis will overwrite the current buffer!\n\nProceed?";
constexpr const char* kDelete = "question: \nThis will delete the animation saved in this slot!\n\nProceed?";

TEST_F(StoredScript, EveryQuestionAndRefusalInItsPlace) {
    const auto stored = patternFrames(3, 9, 6, 21);
    writeFile(at("tmp/AnimSlot 1.dat"), slotBytes(3, stored)); // no thumbnail: shown empty
    // Any question where none belongs would find no answer and fail the run.
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [30, 20]},
      "steps": [
        {"menu": "menuStored"},
        {"click": "cmdSave(2)"},
        {"answer": [{"question": 1}]}, {"click": "cmdLoad(1)"},
        {"host": "Van_GotoFrame", "args": [2]},
        {"click": "cmdSave(0)"},
        {"dump": "first"},
        {"answer": [{"question": 2}]}, {"click": "cmdSave(0)"},
        {"answer": [{"question": 1}]}, {"click": "cmdSave(0)"},
        {"answer": [{"question": 2}]}, {"click": "cmdLoad(0)"},
        {"answer": [{"question": 2}]}, {"click": "cmdClear(0)"},
        {"dump": "kept"},
        {"answer": [{"question": 1}]}, {"click": "cmdClear(0)"},
        {"dump": "cleared"},
        {"click": "cmdCancel"},
        {"dump": "done"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    // Without an animation a save is refused; a load still asks, and replaces the host's size.
    const QJsonObject first = state("first");
    EXPECT_EQ(dialogs(first), (std::vector<std::string>{"message: No Animation in memory!",
                                                        std::string(kOverwriteBuffer) + " -> 1"}));
    EXPECT_FALSE(exists("tmp/AnimSlot 2.dat"));
    EXPECT_EQ(first["width"].toInt(), 9);
    EXPECT_EQ(first["current_frame"].toInt(), 0) << "a save ends on frame 0";
    EXPECT_EQ(readFile(at("first/animation.dat")), slotBytes(3, stored));
    EXPECT_EQ(controlText(first, "frmMultiAnims", "lblSlots(0)"), "3 Frames,  (9  X  6)");

    const QJsonObject kept = state("kept");
    const std::vector<std::string> all = dialogs(kept);
    const std::vector<std::string> asked(all.begin() + std::min<std::size_t>(2, all.size()), all.end());
    EXPECT_EQ(asked, (std::vector<std::string>{
                         std::string(kOverwriteSlot) + " -> 2", std::string(kOverwriteSlot) + " -> 1",
                         std::string(kOverwriteBuffer) + " -> 2", std::string(kDelete) + " -> 2"}));
    EXPECT_TRUE(formControl(kept, "frmMultiAnims", "cmdLoad(0)")["enabled"].toBool());

    const QJsonObject cleared = state("cleared");
    EXPECT_EQ(controlText(cleared, "frmMultiAnims", "lblSlots(0)"), "EMPTY");
    EXPECT_FALSE(formControl(cleared, "frmMultiAnims", "cmdLoad(0)")["enabled"].toBool());
    EXPECT_FALSE(formControl(cleared, "frmMultiAnims", "cmdClear(0)")["enabled"].toBool());
    EXPECT_TRUE(formControl(cleared, "frmMultiAnims", "cmdSave(0)")["enabled"].toBool());
    EXPECT_FALSE(exists("tmp/AnimSlot 0.dat") || exists("tmp/AnimThumb 0.bmp"));

    const QJsonObject done = state("done");
    EXPECT_TRUE(form(done, "frmMultiAnims").isEmpty());
    EXPECT_TRUE(form(done, "Mainfrm")["visible"].toBool());
    EXPECT_FALSE(done["locked"].toBool());
}

TEST_F(StoredScript, AllFourSlotsFillLoadAndClear) {
    host::Animation anim;
    anim.frames = patternFrames(5, 24, 18, 3);
    host::writeAnimationDat(at("anim.dat"), anim);
    const RunResult fill = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
      "steps": [
        {"open": "Stored Animations"},
        {"click": "cmdSave(0)"}, {"click": "cmdSave(1)"}, {"click": "cmdSave(2)"}, {"click": "cmdSave(3)"},
        {"screenshot": "filled.png"}]})JS");
    ASSERT_EQ(fill.exitCode, 0) << fill.err;
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(readFile(at(QString("tmp/AnimSlot %1.dat").arg(i))), readFile(at("anim.dat"))) << i;
    EXPECT_EQ(QImage(at("filled.png")).isNull(), false);

    // The slots outlive the panel: a later run finds them, loads one and clears them all.
    const RunResult use = run(R"JS({"host": {"temp_dir": "tmp", "size": [7, 7], "frames": 2},
      "steps": [
        {"menu": "menuStored"},
        {"answer": [{"question": 1}]}, {"click": "cmdLoad(2)"},
        {"dump": "loaded"},
        {"answer": [{"question": 1}, {"question": 1}, {"question": 1}, {"question": 1}]},
        {"click": "cmdClear(0)"}, {"click": "cmdClear(1)"}, {"click": "cmdClear(2)"}, {"click": "cmdClear(3)"},
        {"dump": "empty"}]})JS");
    ASSERT_EQ(use.exitCode, 0) << use.err;
    EXPECT_EQ(readFile(at("loaded/animation.dat")), readFile(at("anim.dat")));
    EXPECT_EQ(controlText(state("loaded"), "frmMultiAnims", "lblSlots(3)"), "5 Frames,  (24  X  18)");

    const QJsonObject empty = state("empty");
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(controlText(empty, "frmMultiAnims", QString("lblSlots(%1)").arg(i)), "EMPTY");
        EXPECT_FALSE(formControl(empty, "frmMultiAnims", QString("cmdLoad(%1)").arg(i))["enabled"].toBool());
    }
    EXPECT_TRUE(QDir(at("tmp")).entryList(QDir::Files).isEmpty());
}

} // namespace
} // namespace kirrel::test
