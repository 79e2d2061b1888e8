// The CFX file byte for byte as export writes it, the title's field and its trimming, and import's
// way back from the file into the host, including files that don't hold up.

#include "customfx/CfxFile.h"
#include "customfx/CfxSupport.h"
#include "customfx/CustomFX.h"

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
    for (int f = 0; f < 3; ++f)
        EXPECT_EQ(host().framePicture(f), pictures[static_cast<std::size_t>(f)]);
}

TEST_F(CfxFile, ExportCutsALongTitleAndLeavesTheTailOfALongerOldFile) {
    loadScene(2, 3, 3);
    const std::string path = file("over.cfx");
    const std::string old(2000, 'x');
    writeFile(QString::fromStdString(path), old);
    answerFile(path);
    ExportCFX("A title of thirty-one letters!!");
    const std::string bytes = readFile(QString::fromStdString(path));
    const std::string fresh =
        cfxBytes("A title of thirty-one letters!", pictures, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66});
    ASSERT_EQ(bytes.size(), old.size());
    EXPECT_EQ(bytes.substr(0, fresh.size()), fresh);
    EXPECT_EQ(bytes.substr(fresh.size()), old.substr(fresh.size()));
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
    EXPECT_EQ(customfx::titleField("Untitled"), "Untitled" + blanks(22));
    EXPECT_EQ(customfx::titleField(std::string(31, 'q')), std::string(30, 'q'));
    EXPECT_EQ(customfx::titleField("Café"), "Caf\xE9" + blanks(26)); // one byte per character
    EXPECT_EQ(customfx::trimTitle("Untitled" + blanks(22)), "Untitled");
    EXPECT_EQ(customfx::trimTitle("a b" + blanks(27)), "a b");
    EXPECT_EQ(customfx::trimTitle(blanks(30)), blanks(30));
    EXPECT_EQ(customfx::trimTitle(std::string(30, 'z')), std::string(30, 'z'));
    EXPECT_EQ(customfx::trimTitle("Caf\xE9" + blanks(26)), "Café");
}

TEST_F(CfxFile, ImportTakesOverFramesSizeAndKeysAndSaysWhatItFound) {
    const auto frames = patternFrames(3, 5, 4, 40);
    const std::string path = file("in.cfx");
    writeFile(QString::fromStdString(path), cfxBytes(blanks(30), frames, {1, 2, 3, 250, 251, 252}));
    loadScene(6, 9, 9);
    answerFile(path);
    ImportCFX();
    ASSERT_EQ(host().totalFrames(), 3);
    EXPECT_EQ(host().bufferWidth(), 5);
    EXPECT_EQ(host().bufferHeight(), 4);
    for (int f = 0; f < 3; ++f)
        EXPECT_EQ(host().framePicture(f), frames[static_cast<std::size_t>(f)]) << f;
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(host().primaryColor(), host::packColor(1, 2, 3));
    EXPECT_EQ(host().secondaryColor(), host::packColor(250, 251, 252));
    // A title of nothing but blanks comes back whole.
    EXPECT_EQ(host().dialogs().back().text,
              "CFX Import Completed\n\n" + blanks(30) + "\nFrames: 3\nResolution: 5 X 4");
    EXPECT_EQ(calls("Van_CreateAnimAdv"), std::vector<std::string>{"Van_CreateAnimAdv(3, 2)"});
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
    EXPECT_EQ(host().totalFrames(), 3);
    EXPECT_EQ(host().bufferWidth(), 4);
    for (int f = 0; f < 3; ++f)
        EXPECT_EQ(host().framePicture(f), pictures[static_cast<std::size_t>(f)]);
    EXPECT_EQ(host().primaryColor(), 0x332211u);
    EXPECT_TRUE(calls("Van_NewBuffer").empty());
    EXPECT_TRUE(calls("Van_SetRbuffer").empty());
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedCfx, testing::ValuesIn(damages()),
                         [](const testing::TestParamInfo<Damage>& i) { return std::string(i.param.name); });

} // namespace
} // namespace kirrel::test
