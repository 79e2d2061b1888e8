// The CFX builder, player and import as a user drives them through session scripts: a recipe built
// from one animation, applied to another animation of another size, and imported back; and every way
// out of the player's Apply leaving the dialog usable.

#include "customfx/CfxSupport.h"
#include "host/AnimationFiles.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

namespace kirrel::test {
namespace {

constexpr std::uint32_t kKeyA = 0x00FF00; // green marks the animation's own frame
constexpr std::uint32_t kKeyB = 0xFF00FF; // magenta marks the swap picture
constexpr std::uint32_t kBand = 0xFFFFFF;

class CfxScript : public ScriptTest {
  protected:
    void SetUp() override {
        // The recipe: a wipe from the left, frame by frame, with a white band at its edge.
        host::Animation recipeAnim;
        for (int i = 0; i < 4; ++i)
            recipeAnim.frames.push_back(recipe(39, 29, 8 * (i + 1), kKeyA, kKeyB, kBand));
        host::writeAnimationDat(at("recipe.dat"), recipeAnim);
        host::Animation scene;
        scene.frames = patternFrames(6, 79, 59, 30);
        scenes = scene.frames;
        host::writeAnimationDat(at("scene.dat"), scene);
        swap = patternPicture(79, 59, 150);
        host::writePictureDat(at("swap.dat"), swap);
    }
    void build() {
        const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "recipe.dat",
            "primary": [0, 255, 0], "secondary": [255, 0, 255]},
          "steps": [
            {"open": "CFX Builder (Basic)"},
            {"set": {"control": "txtCFX_Title", "text": "Wipe Recipe"}},
            {"answer": [{"file": "fx.cfx"}]},
            {"click": "cmd_Run"},
            {"dump": "built"}]
    })JS");
        ASSERT_EQ(r.exitCode, 0) << r.err;
    }

    std::vector<host::Picture> scenes;
    host::Picture swap;
};

TEST_F(CfxScript, BuildApplyToAnotherSizeAndImportBack) {
    build();
    EXPECT_EQ(dialogTexts(state("built")).back(), "CFX Export Completed");
    EXPECT_EQ(QFileInfo(at("fx.cfx")).size(), 44 + 4 * 3 * 40 * 30);
    EXPECT_TRUE(formControl(state("built"), "frmCFXBuilder", "cmd_Run")["enabled"].toBool());

    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "scene.dat", "swap": "swap.dat",
        "primary": [1, 2, 3], "secondary": [4, 5, 6], "current_frame": 5},
      "steps": [
        {"open": "CFX Player"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"answer": [{"file": "fx.cfx"}, {"question": 6}]},
        {"click": "cmd_Run"},
        {"dump": "played"},
        {"close": "frmCFXPlayer"},
        {"answer": [{"question": 6}, {"file": "fx.cfx"}]},
        {"open": "Import CFX File"},
        {"dump": "imported"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject played = state("played");
    const auto asked = dialogTexts(played);
    EXPECT_NE(
        std::find(asked.begin(), asked.end(), "'Wipe Recipe'\n4 frames at 39 X 29\n\nApply to Animation?"),
        asked.end());
    EXPECT_TRUE(formControl(played, "frmCFXPlayer", "cmd_Run")["enabled"].toBool());
    EXPECT_TRUE(QFile::exists(at("tmp/AnimUndo.dat")));
    const auto out = dumped("played");
    ASSERT_EQ(out.size(), 6u);
    for (int f = 0; f < 4; ++f) {
        const host::Picture& p = out[static_cast<std::size_t>(f)];
        // The recipe is twice as wide here: left of its edge the frame, right of it the swap picture.
        EXPECT_EQ(pixel(p, 1, 30), pixel(scenes[static_cast<std::size_t>(f)], 1, 30)) << f;
        EXPECT_EQ(pixel(p, 78, 30), pixel(swap, 78, 30)) << f;
    }
    EXPECT_EQ(out[4], scenes[4]);
    EXPECT_EQ(out[5], scenes[5]);
    EXPECT_EQ(played["primary"].toArray()[0].toInt(), 1);

    const QJsonObject imported = state("imported");
    EXPECT_EQ(dialogTexts(imported).back(),
              "CFX Import Completed\n\nWipe Recipe\nFrames: 4\nResolution: 39 X 29");
    EXPECT_EQ(imported["total_frames"].toInt(), 4);
    EXPECT_EQ(imported["width"].toInt(), 39);
    EXPECT_EQ(imported["primary"].toArray()[1].toInt(), 255);
    EXPECT_EQ(imported["secondary"].toArray()[0].toInt(), 255);
    EXPECT_EQ(dumped("imported"), host::readAnimationDat(at("recipe.dat")).frames);
}

// Then, over a still the user made meanwhile, import asks first and the builder refuses.
TEST_F(CfxScript, EveryWayOutOfThePlayerLeavesItUsableAndAStillIsRefused) {
    build();
    writeFile(at("two.cfx"),
              le16(2) + std::string(30, ' ') + le16(2) + le16(3) + le16(3) + std::string(6, '\0'));
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "scene.dat", "swap": "swap.dat"},
      "steps": [
        {"open": "CFX Player"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"answer": [{"file": ""}]},
        {"click": "cmd_Run"},
        {"answer": [{"file": "missing.cfx"}]},
        {"click": "cmd_Run"},
        {"answer": [{"file": "two.cfx"}]},
        {"click": "cmd_Run"},
        {"answer": [{"file": "fx.cfx"}, {"question": 2}]},
        {"click": "cmd_Run"},
        {"dump": "declined"},
        {"host": "Van_NewBuffer", "args": [20, 10]},
        {"answer": [{"question": 2}]},
        {"open": "Import CFX File"},
        {"open": "CFX Builder (Basic)"},
        {"click": "cmd_Run"},
        {"dump": "still"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject declined = state("declined");
    const auto shown = dialogTexts(declined);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "Not a Type 1 CFX File: 2"), 1);
    for (const char* c : {"cmd_Run", "cmdCancel", "cmdUndo"})
        EXPECT_TRUE(formControl(declined, "frmCFXPlayer", c)["enabled"].toBool()) << c;
    EXPECT_FALSE(QFile::exists(at("tmp/AnimUndo.dat")));
    EXPECT_EQ(dumped("declined"), scenes);

    const QJsonObject still = state("still");
    const auto later = dialogTexts(still);
    ASSERT_GE(later.size(), shown.size() + 2);
    EXPECT_EQ(later[shown.size()], "\nThis will overwrite the current buffer!\n\nProceed?");
    EXPECT_EQ(later.back(), "Must have animation of 2 or more frames");
    EXPECT_EQ(still["width"].toInt(), 20);
    EXPECT_TRUE(formControl(still, "frmCFXBuilder", "cmdCancel")["enabled"].toBool());
    EXPECT_EQ(controlText(still, "frmCFXBuilder", "Label2"), "CFX Title:");
}

} // namespace
} // namespace kirrel::test
