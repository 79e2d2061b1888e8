// CustomFX: the CFX file byte for byte as export writes it, the title's field and its trimming, import's
// way back from the file into the host, files that don't hold up, and playing a file: its key colours
// decide where the animation's frame and where the swap picture show, it scales to the animation's
// size but not in time, and the swap picture is read once. Then the builder, player and import as a
// user drives them through session scripts, for their questions and texts: a recipe built, applied and
// imported back; and every way out of the player's Apply leaving the dialog usable.

#include "customfx/CustomFX.h"
#include "customfx/CfxFile.h"
#include "customfx/CfxSupport.h"
#include "host/AnimationFiles.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

namespace kirrel::test {
namespace {

using customfx::ExportCFX;
using customfx::ImportCFX;

std::string blanks(int n) {
    return std::string(static_cast<std::size_t>(n), ' ');
}

class CfxFile : public HostTest {
  protected:
    std::string file(const char* name) const { return scratch.filePath(name).toStdString(); }
    void loadScene(int frames, int w, int h) {
        pictures = patternFrames(frames, w, h, 9);
        host().loadAnimation(pictures, 1);
        host().setPrimaryPacked(0x332211);
        host().setSecondaryPacked(0x665544);
    }
    std::vector<std::string> messages() const { return calls("Van_MessageBox"); }
    std::vector<host::Picture> pictures;
};

TEST_F(CfxFile, ExportWritesHeaderKeysAndEveryFrameAndLeavesTheHost) {
    loadScene(3, 4, 2);
    const std::string path = file("small.cfx");
    answerFile(path);
    ExportCFX("Swirl");
    EXPECT_EQ(readFile(QString::fromStdString(path)),
              cfxBytes("Swirl" + blanks(25), pictures, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66}));
    EXPECT_EQ(
        calls("Van_RequestFile_save"),
        std::vector<std::string>{"Van_RequestFile_save(\"Save CustomFX File\", \"\", \"cfx(*.cfx)|*.cfx\")"});
    EXPECT_EQ(messages().back(), "Van_MessageBox(\"CFX Export Completed\")");
    EXPECT_EQ(host().currentFrame(), 1);
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_EQ(HostSnapshot::of(host()).pictures, pictures);

    // A long title is cut, and a longer old file keeps its tail.
    const std::string old(2000, 'x');
    writeFile(QString::fromStdString(path), old);
    answerFile(path);
    ExportCFX("A title of thirty-one letters!!");
    const std::string fresh =
        cfxBytes("A title of thirty-one letters!", pictures, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66});
    EXPECT_EQ(readFile(QString::fromStdString(path)), fresh + old.substr(fresh.size()));
}

TEST_F(CfxFile, ExportRefusesFewerThanTwoFramesAndStopsSilentlyWithoutAName) {
    loadScene(1, 3, 3);
    ExportCFX("One");
    EXPECT_EQ(messages(),
              std::vector<std::string>{"Van_MessageBox(\"Must have animation of 2 or more frames\")"});
    EXPECT_TRUE(calls("Van_RequestFile_save").empty());

    loadScene(2, 3, 3);
    trace.clear();
    answerFile("");
    ExportCFX("Two");
    EXPECT_TRUE(messages().empty());
    EXPECT_TRUE(calls("Van_GetRFrame").empty());
}

TEST(CfxTitle, FieldAndTrimming) {
    EXPECT_EQ(customfx::titleField("Café"), "Caf\xE9" + blanks(26)); // one byte per character
    EXPECT_EQ(customfx::trimTitle("Caf\xE9" + blanks(26)), "Café");
    EXPECT_EQ(customfx::trimTitle("a b" + blanks(27)), "a b");
    EXPECT_EQ(customfx::trimTitle(std::string(30, 'z')), std::string(30, 'z'));
}

struct Damage {
    const char* name;
    std::string bytes;
    const char* message;
};

std::vector<Damage> damages() {
    const std::string title = "Damaged" + blanks(23);
    const std::string keys = std::string(6, '\0');
    const std::string onePlane(4 * 3, '\7');
    return {
        {"TypeTwo", le16(2) + title + le16(1) + le16(3) + le16(2) + keys, "Not a Type 1 CFX File: 2"},
        {"TypeMinusOne", le16(-1) + title, "Not a Type 1 CFX File: -1"},
        {"Empty", "", "bad.cfx is damaged: it is too short to hold its header."},
        {"HeaderCut", le16(1) + title + le16(2) + le16(3),
         "bad.cfx is damaged: it is too short to hold its header."},
        {"NoFrames", le16(1) + title + le16(0) + le16(3) + le16(2) + keys,
         "bad.cfx is damaged: its header gives no frames."},
        {"NegativeFrames", le16(1) + title + le16(-5) + le16(3) + le16(2) + keys,
         "bad.cfx is damaged: its header gives a negative frame count."},
        {"NegativeSize", le16(1) + title + le16(2) + le16(-3) + le16(2) + keys,
         "bad.cfx is damaged: its header gives a negative picture size."},
        {"ShortPlanes",
         le16(1) + title + le16(2) + le16(3) + le16(2) + keys + onePlane + onePlane + onePlane + onePlane,
         "bad.cfx is damaged: it is shorter than its header says."},
        {"AbsurdSize", le16(1) + title + le16(32767) + le16(32767) + le16(32767) + keys + onePlane,
         "bad.cfx is damaged: it is shorter than its header says."},
    };
}

class DamagedCfx : public CfxFile, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedCfx, ImportAndPlayRefuseWithAMessageAndLeaveTheHost) {
    const std::string path = file("bad.cfx");
    writeFile(QString::fromStdString(path), GetParam().bytes);
    loadScene(3, 4, 3);
    host().loadSwap(patternPicture(4, 3, 77));
    answerFile(path);
    ImportCFX();
    customfx::PlayCFX(path);
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>(2, GetParam().message));
    EXPECT_EQ(HostSnapshot::of(host()).pictures, pictures);
    EXPECT_EQ(host().primaryColor(), 0x332211u);
    EXPECT_TRUE(calls("Van_NewBuffer").empty());
    EXPECT_TRUE(calls("Van_SetRbuffer").empty());
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedCfx, testing::ValuesIn(damages()),
                         [](const testing::TestParamInfo<Damage>& i) { return std::string(i.param.name); });

// --- Playing -------------------------------------------------------------------------------------

constexpr std::uint32_t kKeyA = 0x10F020; // the file's primary key
constexpr std::uint32_t kKeyB = 0x804000; // the file's secondary key
constexpr std::uint32_t kOther = 0x0000FF;

class CfxPlay : public HostTest {
  protected:
    std::string path() const { return scratch.filePath("fx.cfx").toStdString(); }
    // Recipe frames whose left half is the primary key, then a column of another colour, then the
    // secondary key.
    void writeCfx(int frames, int w, int h) {
        const std::vector<host::Picture> recipes(static_cast<std::size_t>(frames),
                                                 recipe(w, h, (w + 1) / 2, kKeyA, kKeyB, kOther));
        writeFile(QString::fromStdString(path()), cfxBytes("Half and half" + blanks(17), recipes,
                                                           {kKeyA & 255, (kKeyA >> 8) & 255, kKeyA >> 16,
                                                            kKeyB & 255, (kKeyB >> 8) & 255, kKeyB >> 16}));
    }
    void loadScene(int frames, int w, int h) {
        pictures = patternFrames(frames, w, h, 5);
        host().loadAnimation(pictures, 2);
        swap = patternPicture(w, h, 200);
        host().loadSwap(swap);
        // The host's own colours are other than the file's: the file's win.
        host().setPrimaryPacked(kKeyB);
        host().setSecondaryPacked(kKeyA);
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
    std::vector<host::Picture> pictures;
    host::Picture swap;
};

TEST_F(CfxPlay, KeysOfTheFileChooseFrameOrSwapAndOtherColoursShowAsTheyAre) {
    writeCfx(3, 7, 4);
    loadScene(3, 7, 4);
    customfx::PlayCFX(path());
    std::vector<host::Picture> expected = pictures;
    for (auto& p : expected)
        for (int y = 0; y <= 4; ++y) {
            copyPixel(p, 4, y, host::Picture::filled(7, 4, kOther), 4, y);
            for (int x = 5; x <= 7; ++x)
                copyPixel(p, x, y, swap, x, y);
        }
    EXPECT_EQ(HostSnapshot::of(host()).pictures, expected);
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), 1u);
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(host().primaryColor(), kKeyB); // playing doesn't change the host's colours
    EXPECT_TRUE(calls("Van_Lock").empty());
}

TEST_F(CfxPlay, TheFileIsNotStretchedInTime) {
    // A longer file stops with the animation; a shorter one leaves the later frames as they are.
    writeCfx(40, 5, 3);
    loadScene(25, 5, 3);
    customfx::PlayCFX(path());
    EXPECT_EQ(calls("Van_GotoFrame").size(), 26u); // frames 0 to 24, then back to 0
    EXPECT_EQ(calls("Van_GotoFrame")[24], "Van_GotoFrame(24)");
    for (int f : {0, 24})
        EXPECT_EQ(pixel(frame(f), 5, 0), pixel(swap, 5, 0)) << f;

    writeCfx(25, 5, 3);
    loadScene(40, 5, 3);
    customfx::PlayCFX(path());
    EXPECT_EQ(pixel(frame(24), 5, 0), pixel(swap, 5, 0));
    for (int f = 25; f < 40; ++f)
        EXPECT_EQ(frame(f), pictures[static_cast<std::size_t>(f)]) << f;
}

class CfxScaling : public CfxPlay, public testing::WithParamInterface<std::pair<int, int>> {};

// A recipe of one size on an animation of another, larger or smaller: the left part still shows the
// animation's frame and the right part the swap picture.
TEST_P(CfxScaling, TheFileIsScaledToTheAnimationsSize) {
    const auto [fileW, animW] = GetParam();
    writeCfx(2, fileW, fileW * 3 / 4);
    loadScene(2, animW, animW * 3 / 4);
    customfx::PlayCFX(path());
    const int h = animW * 3 / 4;
    for (int f = 0; f < 2; ++f)
        for (int y : {0, h / 2, h}) {
            EXPECT_EQ(pixel(frame(f), 1, y), pixel(pictures[static_cast<std::size_t>(f)], 1, y))
                << f << "," << y;
            EXPECT_EQ(pixel(frame(f), animW - 1, y), pixel(swap, animW - 1, y)) << f << "," << y;
        }
    EXPECT_EQ(frame(0).width(), animW);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CfxScaling,
                         testing::Values(std::pair{31, 63}, std::pair{63, 31}, std::pair{319, 639},
                                         std::pair{40, 43}));

constexpr std::uint32_t kGreen = 0x00FF00;   // green marks the animation's own frame
constexpr std::uint32_t kMagenta = 0xFF00FF; // magenta marks the swap picture
constexpr std::uint32_t kWhite = 0xFFFFFF;

class CfxScript : public ScriptTest {
  protected:
    void SetUp() override {
        // The recipe: a wipe from the left, frame by frame, with a white band at its edge.
        host::Animation recipeAnim;
        for (int i = 0; i < 4; ++i)
            recipeAnim.frames.push_back(recipe(39, 29, 8 * (i + 1), kGreen, kMagenta, kWhite));
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
            {"open": "CFX Builder (Basic)"}, {"set": {"control": "txtCFX_Title", "text": "Wipe Recipe"}},
            {"answer": [{"file": "fx.cfx"}]}, {"click": "cmd_Run"}, {"dump": "built"}]})JS");
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
        {"open": "CFX Player"}, {"set": {"control": "chkUndoSave", "value": 1}},
        {"answer": [{"file": "fx.cfx"}, {"question": 6}]}, {"click": "cmd_Run"}, {"dump": "played"},
        {"close": "frmCFXPlayer"},
        {"answer": [{"question": 6}, {"file": "fx.cfx"}]}, {"open": "Import CFX File"}, {"dump": "imported"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject played = state("played");
    EXPECT_EQ(dialogTexts(played).back(), "'Wipe Recipe'\n4 frames at 39 X 29\n\nApply to Animation?");
    EXPECT_TRUE(formControl(played, "frmCFXPlayer", "cmd_Run")["enabled"].toBool());
    EXPECT_TRUE(QFile::exists(at("tmp/AnimUndo.dat")));
    // How the recipe lands on the frames is pinned in process; here, that the Apply played it.
    const auto out = dumped("played");
    ASSERT_EQ(out.size(), 6u);
    EXPECT_EQ(pixel(out[0], 78, 30), pixel(swap, 78, 30));
    EXPECT_EQ(out[5], scenes[5]);

    const QJsonObject imported = state("imported");
    EXPECT_EQ(dialogTexts(imported).back(),
              "CFX Import Completed\n\nWipe Recipe\nFrames: 4\nResolution: 39 X 29");
    EXPECT_EQ(imported["primary"].toArray()[1].toInt(), 255);
    EXPECT_EQ(imported["secondary"].toArray()[0].toInt(), 255);
}

// Then, over a still the user made meanwhile, import asks first and the builder refuses.
TEST_F(CfxScript, EveryWayOutOfThePlayerLeavesItUsableAndAStillIsRefused) {
    build();
    writeFile(at("two.cfx"),
              le16(2) + std::string(30, ' ') + le16(2) + le16(3) + le16(3) + std::string(6, '\0'));
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "scene.dat", "swap": "swap.dat"},
      "steps": [
        {"open": "CFX Player"}, {"set": {"control": "chkUndoSave", "value": 1}},
        {"answer": [{"file": ""}]}, {"click": "cmd_Run"},
        {"answer": [{"file": "missing.cfx"}]}, {"click": "cmd_Run"},
        {"answer": [{"file": "two.cfx"}]}, {"click": "cmd_Run"},
        {"answer": [{"file": "fx.cfx"}, {"question": 2}]}, {"click": "cmd_Run"}, {"dump": "declined"},
        {"host": "Van_NewBuffer", "args": [20, 10]},
        {"answer": [{"question": 2}]}, {"open": "Import CFX File"},
        {"open": "CFX Builder (Basic)"}, {"click": "cmd_Run"}, {"dump": "still"}]})JS");
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
