// Combine, Attach and Composite with a stored animation, driven through their dialogs in process
// and compared byte for byte with results built here independently.

#include "pixel/Mixing.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QSlider>

namespace kirrel::test {
namespace {

class Splice : public FormTest {
  protected:
    void writeSlot(int slot, const std::vector<host::Picture>& frames) {
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), slot)),
                  slotBytes(static_cast<int>(frames.size()), frames));
    }
};

// --- Combine -------------------------------------------------------------------------------------

struct Placement {
    const char* name;
    const char* option;
    int after; // for "after a frame"
};

class CombinePlacement : public Splice, public testing::WithParamInterface<std::tuple<Placement, bool>> {};

TEST_P(CombinePlacement, GivesTheHostsFramesWithTheStoredOnesInTheirPlace) {
    const auto& [placement, otherSize] = GetParam();
    const auto host10 = patternFrames(10, 12, 8, 1);
    const auto slot5 = otherSize ? patternFrames(5, 7, 5, 90) : patternFrames(5, 12, 8, 90);
    host().loadAnimation(host10);
    writeSlot(2, slot5);

    // The stored frames as the host will hold them: copies, or resampled to the host's bounds.
    std::vector<host::Picture> fitted;
    for (const auto& s : slot5) {
        host::Picture t(12, 8);
        if (otherSize)
            krl::ResizeBuffer(t.r, t.g, t.b, s.r, s.g, s.b, 12, 8, 7, 5);
        else
            t = s;
        fitted.push_back(t);
    }
    std::vector<host::Picture> expected;
    const std::string name = placement.name;
    if (name == "Append") {
        expected = host10;
        expected.insert(expected.end(), fitted.begin(), fitted.end());
    } else if (name == "InsertFirst") {
        expected = fitted;
        expected.insert(expected.end(), host10.begin(), host10.end());
    } else {
        expected.assign(host10.begin(), host10.begin() + placement.after + 1);
        expected.insert(expected.end(), fitted.begin(), fitted.end());
        expected.insert(expected.end(), host10.begin() + placement.after + 1, host10.end());
    }

    auto* form = open("frmCombineAnims");
    choose(form, "optSlot(2)");
    choose(form, placement.option);
    static_cast<QComboBox*>(form->control("cboSelectFrame"))->setCurrentIndex(placement.after);
    apply(form);

    ASSERT_EQ(host().totalFrames(), 15);
    EXPECT_EQ(host().bufferWidth(), 12);
    EXPECT_EQ(host().bufferHeight(), 8);
    const auto got = HostSnapshot::of(host()).pictures;
    for (int i = 0; i < 15; ++i)
        EXPECT_TRUE(got[i] == expected[i]) << "frame " << i;
    auto* list = static_cast<QComboBox*>(form->control("cboSelectFrame"));
    EXPECT_EQ(list->count(), 15);
    EXPECT_EQ(list->itemText(14), "14");
    EXPECT_EQ(host().currentFrame(), 14);
    EXPECT_EQ(host().scrubTotal(), 15);
}

INSTANTIATE_TEST_SUITE_P(
    Placements, CombinePlacement,
    testing::Combine(testing::Values(Placement{"Append", "optCombineAnim(1)", 0},
                                     Placement{"InsertFirst", "optCombineAnim(0)", 0},
                                     Placement{"InsertAfter3", "optCombineAnim(2)", 3},
                                     Placement{"InsertAfterLast", "optCombineAnim(2)", 9}),
                     testing::Bool()),
    [](const auto& i) {
        return std::string(std::get<0>(i.param).name) + (std::get<1>(i.param) ? "Scaled" : "SameSize");
    });

TEST_F(Splice, CombineAfterAChangeOfFrameCountOnlyRefreshesAndADamagedSlotChangesNothing) {
    host().loadAnimation(patternFrames(4, 6, 6));
    writeSlot(0, patternFrames(2, 6, 6, 50));
    auto* form = open("frmCombineAnims");
    choose(form, "optSlot(0)");
    host().createAnim(6);
    static_cast<QCheckBox*>(form->control("chkUndoSave"))->setChecked(true);
    apply(form);
    EXPECT_EQ(host().totalFrames(), 6);
    EXPECT_EQ(static_cast<QComboBox*>(form->control("cboSelectFrame"))->count(), 6);
    EXPECT_FALSE(undoSaved());

    // Cut the slot short behind the dialog's back.
    const std::string whole = slotBytes(2, patternFrames(2, 6, 6, 50));
    writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), 0)), whole.substr(0, whole.size() - 5));
    const HostSnapshot before = HostSnapshot::of(host());
    apply(form);
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_FALSE(undoSaved());
    const auto& log = host().dialogs();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].text, "Animation Size Changed!\nUpdating Settings");
    EXPECT_EQ(log[1].text,
              "Slot 1 can't be used.\n\nAnimSlot 0.dat is damaged: it is shorter than its header "
              "says.\nThe animation in memory is unchanged.");
}

// --- Attach --------------------------------------------------------------------------------------

class AttachSide : public Splice, public testing::WithParamInterface<int> {};

// The joined frame computed pixel by pixel: the second picture wins where both reach.
host::Picture joinedByHand(const host::Picture& first, const host::Picture& second, bool sideBySide) {
    const int w = sideBySide ? first.width() + second.width() : first.width();
    const int h = sideBySide ? first.height() : first.height() + second.height();
    host::Picture out(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            const int sx = sideBySide ? x - first.width() : x;
            const int sy = sideBySide ? y : y - first.height();
            const host::Picture& from = (sx >= 0 && sy >= 0) ? second : first;
            const int fx = (sx >= 0 && sy >= 0) ? sx : x;
            const int fy = (sx >= 0 && sy >= 0) ? sy : y;
            copyPixel(out, x, y, from, fx, fy);
        }
    return out;
}

TEST_P(AttachSide, JoinsEveryFrameAtTheRightOffsetAndLeavesTheSlotAlone) {
    const int side = GetParam();
    const bool sideBySide = side < 2;
    const auto mainFrames = patternFrames(3, 100, 20, 4);
    const auto storedFrames = sideBySide ? patternFrames(3, 50, 20, 140) : patternFrames(3, 100, 9, 140);
    host().loadAnimation(mainFrames, 1);
    writeSlot(3, storedFrames);
    const std::string slotBefore = readFile(QString::fromStdString(stored::slotDataPath(tempDir(), 3)));

    auto* form = open("frmAttachAnims");
    choose(form, "optSlot(3)");
    choose(form, QString("optAttachAnim(%1)").arg(side));
    apply(form);

    EXPECT_EQ(host().bufferWidth(), sideBySide ? 150 : 100);
    EXPECT_EQ(host().bufferHeight(), sideBySide ? 20 : 29);
    ASSERT_EQ(host().totalFrames(), 3);
    const bool storedFirst = side == 0 || side == 2;
    for (int i = 0; i < 3; ++i) {
        const auto& first = storedFirst ? storedFrames[i] : mainFrames[i];
        const auto& second = storedFirst ? mainFrames[i] : storedFrames[i];
        EXPECT_TRUE(host().framePicture(i) == joinedByHand(first, second, sideBySide)) << "frame " << i;
    }
    if (side == 1) { // 100 + 50 gives 150; the stored frame begins at x = 100, over the host's last column
        EXPECT_EQ(host().framePicture(0).r.at(100, 7), storedFrames[0].r.at(0, 7));
        EXPECT_EQ(host().framePicture(0).r.at(99, 7), mainFrames[0].r.at(99, 7));
    }
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(readFile(QString::fromStdString(stored::slotDataPath(tempDir(), 3))), slotBefore);
    EXPECT_TRUE(host().dialogs().empty());
}

INSTANTIATE_TEST_SUITE_P(Sides, AttachSide, testing::Values(0, 1, 2, 3), [](const auto& i) {
    return std::string(std::array{"Left", "Right", "Top", "Bottom"}[static_cast<std::size_t>(i.param)]);
});

TEST_F(Splice, AttachRefusesFramesAndSizesThatDontFitBeforeSavingTheUndo) {
    host().loadAnimation(patternFrames(3, 10, 8));
    writeSlot(0, patternFrames(2, 10, 8, 7)); // another frame count
    writeSlot(1, patternFrames(3, 10, 5, 7)); // another height, same width
    writeSlot(2, patternFrames(3, 6, 8, 7));  // another width, same height
    auto* form = open("frmAttachAnims");
    static_cast<QCheckBox*>(form->control("chkUndoSave"))->setChecked(true);
    const HostSnapshot before = HostSnapshot::of(host());

    const std::string frameCount =
        "Stored Animation must have same frame count as current animation in memory!";
    const std::string height =
        "Stored Animation must have same height\nas animation in memory\nfor Left / Right "
        "attachments!";
    const std::string width =
        "Stored Animation must have same width\nas animation in memory\nfor Top / Bottom "
        "attachments!";
    std::vector<std::string> expected;
    for (int side = 0; side < 4; ++side) {
        choose(form, QString("optAttachAnim(%1)").arg(side));
        choose(form, "optSlot(0)");
        apply(form);
        expected.push_back(frameCount);
        choose(form, side < 2 ? "optSlot(1)" : "optSlot(2)");
        apply(form);
        expected.push_back(side < 2 ? height : width);
    }
    EXPECT_EQ(messagesOf(host()), expected);
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_FALSE(undoSaved());

    // Another height is fine on top.
    choose(form, "optAttachAnim(2)");
    choose(form, "optSlot(1)");
    apply(form);
    EXPECT_EQ(host().bufferHeight(), 13);
    EXPECT_TRUE(undoSaved());
}

// --- Composite -----------------------------------------------------------------------------------

struct ModeCase {
    const char* text;
    void (*operation)(krl::Plane&, krl::Plane&, krl::Plane&, const krl::Plane&, const krl::Plane&,
                      const krl::Plane&, int, int);
};

class CompositeModes : public Splice, public testing::WithParamInterface<std::tuple<ModeCase, int>> {};

// From frame 0 on, each frame the stored animation reaches is mixed; the others stay. At full strength
// plain mixing gives the stored frame itself.
TEST_P(CompositeModes, EachModeRunsItsOperationWithTheStoredFrameFirstThenTheMix) {
    const auto& [mode, strength] = GetParam();
    const auto mainFrames = patternFrames(4, 8, 5, 30);
    const auto storedFrames = patternFrames(2, 8, 5, 170);
    host().loadAnimation(mainFrames, 3);
    writeSlot(1, storedFrames);
    auto* form = open("frmCompositeAnims");
    EXPECT_EQ(text(form, "Label5"), "Mix Strength\n(50% Main, 50% Stored)");
    ctl<QComboBox>(form, "cboModeOptions")->setCurrentText(mode.text);
    ctl<QSlider>(form, "Slider1")->setValue(strength);
    EXPECT_EQ(text(form, "Label5"),
              QString("Mix Strength\n(%1% Main, %2% Stored)").arg(100 - strength).arg(strength));
    choose(form, "optSlot(1)");
    apply(form);
    for (int i = 2; i < 4; ++i)
        EXPECT_TRUE(host().framePicture(i) == mainFrames[i]) << i;
    EXPECT_EQ(host().currentFrame(), 0);

    for (int i = 0; i < 2; ++i) {
        host::Picture t = storedFrames[i];
        const host::Picture& m = mainFrames[i];
        if (mode.operation) mode.operation(t.r, t.g, t.b, m.r, m.g, m.b, 8, 5);
        krl::MixBuffers(t.r, t.g, t.b, m.r, m.g, m.b, strength, 8, 5);
        EXPECT_TRUE(host().framePicture(i) == t) << mode.text << " frame " << i;
        if (!mode.operation && strength == 100) {
            EXPECT_TRUE(host().framePicture(i) == storedFrames[i]) << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, CompositeModes,
                         testing::Combine(testing::Values(ModeCase{"Standard Mixing", nullptr},
                                                          ModeCase{"Additive", krl::AddBuffers},
                                                          ModeCase{"Difference", krl::DiffBuffers},
                                                          ModeCase{"Multiply", krl::MultiplyBuffers},
                                                          ModeCase{"Lighten", krl::LightenBuffers},
                                                          ModeCase{"Darken", krl::DarkenBuffers}),
                                          testing::Values(1, 63, 100)),
                         [](const auto& i) {
                             std::string name = std::get<0>(i.param).text;
                             std::erase(name, ' ');
                             return name + std::to_string(std::get<1>(i.param));
                         });

TEST_F(Splice, CompositeThroughTheAlphaChannelKeepsTheHostWhereAlphaIsZero) {
    const auto mainFrames = patternFrames(3, 9, 4, 3);
    const auto storedFrames = patternFrames(3, 9, 4, 120);
    host().loadAnimation(mainFrames, 2);
    krl::Plane alpha(9, 4);
    for (int y = 0; y <= 4; ++y)
        for (int x = 0; x <= 9; ++x)
            alpha.at(x, y) = x < 5 ? 0 : 255;
    host().setAlpha(alpha);
    writeSlot(2, storedFrames);
    auto* form = open("frmCompositeAnims");
    static_cast<QComboBox*>(form->control("cboAlphaOptions"))->setCurrentText("Use Alpha Channel");
    static_cast<QSlider*>(form->control("Slider1"))->setValue(100);
    choose(form, "optSlot(2)");
    apply(form);
    for (int i = 0; i < 3; ++i)
        for (int y = 0; y <= 4; ++y)
            for (int x = 0; x <= 9; ++x)
                ASSERT_EQ(host().framePicture(i).g.at(x, y),
                          (x < 5 ? mainFrames : storedFrames)[i].g.at(x, y))
                    << i << " " << x << " " << y;
}

TEST_F(Splice, CompositeThroughAnAnimatedMaskUsesItsFramesAndDeletesTheTemporaryFiles) {
    host().loadAnimation(std::vector<host::Picture>(3, host::Picture::filled(7, 3, 0x000000)));
    writeSlot(0, std::vector<host::Picture>(3, host::Picture::filled(7, 3, 0xFFFFFF)));
    // Two mask frames of another size (3 x 1): frame 0 lets the left half through, frame 1 none.
    std::string mask = std::string("\x03\0\0\0\x01\0\0\0\x02\0\0\0", 12);
    mask += std::string("\xFF\xFF\0\0\xFF\xFF\0\0", 8) + std::string(8, '\0');
    const QString maskPath = QDir(scratch.path()).filePath("half.msk");
    writeFile(maskPath, mask);

    auto* form = open("frmCompositeAnims");
    auto* alpha = static_cast<QComboBox*>(form->control("cboAlphaOptions"));
    EXPECT_FALSE(form->control("cmdLoadMask")->isEnabled());
    alpha->setCurrentText("Load Animated Alpha");
    EXPECT_TRUE(form->control("cmdLoadMask")->isEnabled());
    choose(form, "optSlot(0)");
    static_cast<QCheckBox*>(form->control("chkUndoSave"))->setChecked(true);
    apply(form); // no mask yet: refused before the undo
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>{"Please Select an Animated Mask"});
    EXPECT_FALSE(undoSaved());

    answerFile(maskPath.toStdString());
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label7"), "3 X 1 at 2 Frames");
    static_cast<QSlider*>(form->control("Slider1"))->setValue(100);
    apply(form);

    // Mask 255 gives the composited (white) frame, 0 keeps the host's; the mask repeats.
    const auto& f0 = host().framePicture(0);
    EXPECT_EQ(f0.r.at(0, 0), 255);
    EXPECT_EQ(f0.r.at(7, 3), 0);
    EXPECT_EQ(host().framePicture(1).r.at(0, 0), 0);
    EXPECT_EQ(host().framePicture(2).r.at(0, 0), 255);
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList({"TempMask*"}, QDir::Files).isEmpty());
}

} // namespace
} // namespace kirrel::test
