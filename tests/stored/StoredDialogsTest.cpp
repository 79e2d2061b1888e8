// The stored-animation dialogs. Combine, Attach and Composite with a stored animation, driven through
// their dialogs in process and compared byte for byte with results built here independently; the
// Stored Animations panel and the slot requester, in process and through a session script with every
// question and refusal in its place.

#include "panel/EventGuard.h"
#include "pixel/Mixing.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "stored/frmMultiAnims.h"
#include "stored/frmStoredRequester.h"
#include "support/Fixtures.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>

namespace kirrel::test {
namespace {

class Splice : public FormTest {
  protected:
    void writeSlot(int slot, const std::vector<host::Picture>& frames) { putSlot(tempDir(), slot, frames); }
};

// The joined frame: the first picture, then the second over it to its right or below it.
host::Picture joinedByHand(const host::Picture& first, const host::Picture& second, bool sideBySide) {
    const int dx = sideBySide ? first.width() : 0, dy = sideBySide ? 0 : first.height();
    host::Picture out(sideBySide ? dx + second.width() : first.width(),
                      sideBySide ? first.height() : dy + second.height());
    for (int y = 0; y <= first.height(); ++y)
        for (int x = 0; x <= first.width(); ++x)
            copyPixel(out, x, y, first, x, y);
    for (int y = 0; y <= second.height(); ++y)
        for (int x = 0; x <= second.width(); ++x)
            copyPixel(out, dx + x, dy + y, second, x, y);
    return out;
}

// --- Combine -------------------------------------------------------------------------------------

struct Placement {
    const char* name;
    const char* option;
    int after;    // the frame chosen for "after a frame"
    int insertAt; // where the stored frames land among the host's ten
};

class CombinePlacement : public Splice, public testing::WithParamInterface<std::tuple<Placement, bool>> {};

TEST_P(CombinePlacement, GivesTheHostsFramesWithTheStoredOnesInTheirPlace) {
    const auto& [placement, otherSize] = GetParam();
    const auto host10 = patternFrames(10, 12, 8, 1);
    const auto slot5 = patternFrames(5, otherSize ? 7 : 12, otherSize ? 5 : 8, 90);
    host().loadAnimation(host10);
    writeSlot(2, slot5);

    // The stored frames as the host will hold them: copies, or resampled to the host's bounds.
    std::vector<host::Picture> expected = host10;
    auto at = expected.begin() + placement.insertAt;
    for (const auto& s : slot5) {
        host::Picture t = s;
        if (otherSize) {
            t = host::Picture(12, 8);
            krl::ResizeBuffer(t.r, t.g, t.b, s.r, s.g, s.b, 12, 8, 7, 5);
        }
        at = expected.insert(at, t) + 1;
    }

    auto* form = open("frmCombineAnims");
    choose(form, "optSlot(2)");
    choose(form, placement.option);
    auto* list = ctl<QComboBox>(form, "cboSelectFrame");
    list->setCurrentIndex(placement.after);
    apply(form);

    EXPECT_EQ(HostSnapshot::of(host()).pictures, expected);
    EXPECT_EQ(list->count(), 15);
    EXPECT_EQ(list->itemText(14), "14");
    EXPECT_EQ(host().currentFrame(), 14);
    EXPECT_EQ(host().scrubTotal(), 15);
}

INSTANTIATE_TEST_SUITE_P(
    Placements, CombinePlacement,
    testing::Combine(testing::Values(Placement{"Append", "optCombineAnim(1)", 0, 10},
                                     Placement{"InsertFirst", "optCombineAnim(0)", 0, 0},
                                     Placement{"InsertAfter3", "optCombineAnim(2)", 3, 4},
                                     Placement{"InsertAfterLast", "optCombineAnim(2)", 9, 10}),
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
    ctl<QCheckBox>(form, "chkUndoSave")->setChecked(true);
    apply(form);
    EXPECT_EQ(host().totalFrames(), 6);
    EXPECT_EQ(ctl<QComboBox>(form, "cboSelectFrame")->count(), 6);
    EXPECT_FALSE(undoSaved());

    // Cut the slot short behind the dialog's back.
    const std::string whole = slotFile(tempDir(), 0);
    writeFile(slotPath(tempDir(), 0), whole.substr(0, whole.size() - 5));
    const HostSnapshot before = HostSnapshot::of(host());
    apply(form);
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_FALSE(undoSaved());
    EXPECT_EQ(
        messagesOf(host()),
        (std::vector<std::string>{"Animation Size Changed!\nUpdating Settings",
                                  "Slot 1 can't be used.\n\nAnimSlot 0.dat is damaged: it is shorter than "
                                  "its header says.\nThe animation in memory is unchanged."}));
}

// --- Attach --------------------------------------------------------------------------------------

class AttachSide : public Splice, public testing::WithParamInterface<int> {};

TEST_P(AttachSide, JoinsEveryFrameAtTheRightOffsetAndLeavesTheSlotAlone) {
    const int side = GetParam();
    const bool sideBySide = side < 2;
    const auto mainFrames = patternFrames(3, 100, 20, 4);
    const auto storedFrames = patternFrames(3, sideBySide ? 50 : 100, sideBySide ? 20 : 9, 140);
    host().loadAnimation(mainFrames, 1);
    writeSlot(3, storedFrames);
    const std::string slotBefore = slotFile(tempDir(), 3);

    auto* form = open("frmAttachAnims");
    choose(form, "optSlot(3)");
    choose(form, QString("optAttachAnim(%1)").arg(side));
    apply(form);

    // 100 + 50 gives 150 side by side; the second frame begins over the first's last column or row.
    EXPECT_EQ(host().bufferWidth(), sideBySide ? 150 : 100);
    EXPECT_EQ(host().bufferHeight(), sideBySide ? 20 : 29);
    ASSERT_EQ(host().totalFrames(), 3);
    const bool storedFirst = side == 0 || side == 2;
    for (int i = 0; i < 3; ++i) {
        const auto& first = storedFirst ? storedFrames[i] : mainFrames[i];
        const auto& second = storedFirst ? mainFrames[i] : storedFrames[i];
        EXPECT_TRUE(host().framePicture(i) == joinedByHand(first, second, sideBySide)) << "frame " << i;
    }
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(slotFile(tempDir(), 3), slotBefore);
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
    ctl<QCheckBox>(form, "chkUndoSave")->setChecked(true);
    const HostSnapshot before = HostSnapshot::of(host());

    const std::string frameCount =
        "Stored Animation must have same frame count as current animation in memory!";
    const std::string height =
        "Stored Animation must have same height\nas animation in memory\nfor Left / Right attachments!";
    const std::string width =
        "Stored Animation must have same width\nas animation in memory\nfor Top / Bottom attachments!";
    std::vector<std::string> expected;
    for (int side = 0; side < 4; ++side) {
        choose(form, QString("optAttachAnim(%1)").arg(side));
        choose(form, "optSlot(0)");
        apply(form);
        choose(form, side < 2 ? "optSlot(1)" : "optSlot(2)");
        apply(form);
        expected.insert(expected.end(), {frameCount, side < 2 ? height : width});
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

    // Side by side too wide for an animation: the refusal gives the size it would have been.
    host().loadAnimation(std::vector<host::Picture>(3, host::Picture(20000, 1)));
    writeSlot(3, std::vector<host::Picture>(3, host::Picture(20000, 1)));
    choose(form, "optAttachAnim(0)");
    choose(form, "optSlot(3)");
    apply(form);
    EXPECT_EQ(messagesOf(host()).back(), "The attached frames would be 40001 x 2 pixels, larger than an "
                                         "animation can be.\nNothing has been changed.");
}

// --- Composite -----------------------------------------------------------------------------------

struct ModeCase {
    const char* text;
    void (*operation)(krl::Plane&, krl::Plane&, krl::Plane&, const krl::Plane&, const krl::Plane&,
                      const krl::Plane&, int, int);
};

class CompositeModes : public Splice, public testing::WithParamInterface<std::tuple<ModeCase, int>> {};

// From frame 0 on, each frame the stored animation reaches is mixed; the others stay.
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

    std::vector<host::Picture> expected = mainFrames;
    for (int i = 0; i < 2; ++i) {
        host::Picture& t = expected[i] = storedFrames[i];
        const host::Picture& m = mainFrames[i];
        if (mode.operation) mode.operation(t.r, t.g, t.b, m.r, m.g, m.b, 8, 5);
        krl::MixBuffers(t.r, t.g, t.b, m.r, m.g, m.b, strength, 8, 5);
    }
    EXPECT_EQ(HostSnapshot::of(host()).pictures, expected);
    EXPECT_EQ(host().currentFrame(), 0);
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
    std::vector<host::Picture> expected = mainFrames;
    for (int y = 0; y <= 4; ++y)
        for (int x = 5; x <= 9; ++x) {
            alpha.at(x, y) = 255;
            for (int i = 0; i < 3; ++i)
                copyPixel(expected[i], x, y, storedFrames[i], x, y);
        }
    host().setAlpha(alpha);
    writeSlot(2, storedFrames);
    auto* form = open("frmCompositeAnims");
    ctl<QComboBox>(form, "cboAlphaOptions")->setCurrentText("Use Alpha Channel");
    ctl<QSlider>(form, "Slider1")->setValue(100);
    apply(form);
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>{"Please Select a Stored Animation"});
    EXPECT_EQ(HostSnapshot::of(host()).pictures, mainFrames);
    choose(form, "optSlot(2)");
    apply(form);
    EXPECT_EQ(HostSnapshot::of(host()).pictures, expected);
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
    EXPECT_FALSE(form->control("cmdLoadMask")->isEnabled());
    ctl<QComboBox>(form, "cboAlphaOptions")->setCurrentText("Load Animated Alpha");
    EXPECT_TRUE(form->control("cmdLoadMask")->isEnabled());
    choose(form, "optSlot(0)");
    ctl<QCheckBox>(form, "chkUndoSave")->setChecked(true);
    apply(form); // no mask yet: refused before the undo
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>{"Please Select an Animated Mask"});
    EXPECT_FALSE(undoSaved());

    writeFile(maskPath + ".cut", mask.substr(0, 6));
    answerFile((maskPath + ".cut").toStdString());
    click(form, "cmdLoadMask");
    EXPECT_TRUE(messagesOf(host()).back().starts_with("The mask can't be loaded.\n\n"));
    answerFile(maskPath.toStdString());
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label7"), "3 X 1 at 2 Frames");
    ctl<QSlider>(form, "Slider1")->setValue(100);
    apply(form);

    // Mask 255 gives the composited (white) frame, 0 keeps the host's; the mask repeats.
    EXPECT_EQ(host().framePicture(0).r.at(0, 0), 255);
    EXPECT_EQ(host().framePicture(0).r.at(7, 3), 0);
    EXPECT_EQ(host().framePicture(1).r.at(0, 0), 0);
    EXPECT_EQ(host().framePicture(2).r.at(0, 0), 255);
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList({"TempMask*"}, QDir::Files).isEmpty());
}

class StoredPanel : public FormTest {
  protected:
    template <class Form> static Form* open(const char* name) {
        return dynamic_cast<Form*>(FormTest::open(name));
    }
    static bool enabled(panel::FormBase* f, const QString& control) {
        return f->control(control)->isEnabled();
    }
};

TEST_F(StoredPanel, TheLabelShowsTheHeadersNumbersAsTheyStandAndClosingUnlocksTwice) {
    host().loadStill(host::Picture::filled(639, 479, 0x336699));
    host().createAnim(30);
    auto* form = open<stored::frmMultiAnims>("frmMultiAnims");
    click(form, "cmdSave(1)");
    EXPECT_EQ(text(form, "lblSlots(1)"), "30 Frames,  (639  X  479)");
    EXPECT_EQ(QFile(slotPath(tempDir(), 1)).size(), 6 + 30LL * 3 * 640 * 480);
    EXPECT_EQ(form->SlotWidth[1], 639);
    EXPECT_TRUE(enabled(form, "cmdLoad(1)"));
    EXPECT_FALSE(ctl<QLabel>(form, "picThumbnail(1)")->pixmap().isNull());
    trace.clear();
    form->closeByUser();
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_RestorePointer()", "Van_Unlock()", "Van_Unlock()"}));
}

TEST_F(StoredPanel, TheCaptionNotTheFileDecidesARowsState) {
    host().loadAnimation(patternFrames(2, 8, 6));
    auto* form = open<stored::frmMultiAnims>("frmMultiAnims");
    click(form, "cmdSave(0)");
    ASSERT_EQ(text(form, "lblSlots(0)"), "2 Frames,  (8  X  6)");

    // Both files vanish behind the panel's back: the row keeps its text and stays enabled, and the
    // missing thumbnail is simply shown empty.
    QFile::remove(slotPath(tempDir(), 0));
    QFile::remove(QString::fromStdString(stored::slotThumbPath(tempDir(), 0)));
    form->ResetSlots();
    EXPECT_EQ(text(form, "lblSlots(0)"), "2 Frames,  (8  X  6)");
    EXPECT_TRUE(enabled(form, "cmdClear(0)"));
    EXPECT_TRUE(ctl<QLabel>(form, "picThumbnail(0)")->pixmap().isNull());

    // Clearing it asks, then leaves nothing to delete and writes "EMPTY".
    responder.push({host::QueuedAnswer::Kind::Question, 1, {}});
    click(form, "cmdClear(0)");
    EXPECT_EQ(text(form, "lblSlots(0)"), "EMPTY");
    EXPECT_FALSE(enabled(form, "cmdClear(0)"));
    EXPECT_EQ(host().dialogs().size(), 1u);

    // A clear on an empty row, if reached at all, does nothing.
    form->cmdClear_Click(0);
    EXPECT_EQ(host().dialogs().size(), 1u);
}

TEST_F(StoredPanel, TheRequesterOffersFilledSlotsAndItsCancelEndsTheProgram) {
    host().loadAnimation(patternFrames(1, 4, 4));
    auto* panel = open<stored::frmMultiAnims>("frmMultiAnims");
    click(panel, "cmdSave(2)");
    panel->closeByUser();

    auto* form = open<stored::frmStoredRequester>("frmStoredRequester");
    EXPECT_EQ(form->windowTitle(), "Please Select Stored Animation");
    EXPECT_EQ(text(form, "lblSlot(2)"), "1 Frames,  (4  X  4)");
    EXPECT_EQ(text(form, "lblSlot(0)"), "EMPTY");
    EXPECT_FALSE(enabled(form, "optSlot(0)"));
    EXPECT_TRUE(enabled(form, "optSlot(2)"));
    EXPECT_EQ(form->SlotSelected, -1);

    choose(form, "optSlot(2)");
    click(form, "cmdOk");
    EXPECT_EQ(form->SlotSelected, 2);
    EXPECT_TRUE(form->isVisible()); // the caller reads the choice from the open form

    // Activating it again rebuilds the rows and drops the choice.
    form->showForm();
    EXPECT_EQ(form->SlotSelected, -1);
    EXPECT_FALSE(ctl<QRadioButton>(form, "optSlot(2)")->isChecked());

    EXPECT_FALSE(programEnded());
    click(form, "cmdCancel");
    EXPECT_TRUE(programEnded());
    EXPECT_EQ(form->SlotSelected, -1);
    EXPECT_FALSE(form->isVisible());
}

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
    EXPECT_EQ(controlText(first, "frmMultiAnims", "lblSlots(1)"), "3 Frames,  (9  X  6)")
        << "read at opening";

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

} // namespace
} // namespace kirrel::test
