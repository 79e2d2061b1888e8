// The two mask dialogs: in process, the order of their refusals against the undo save and what a
// damaged or vanished mask file does to the Animated Alpha Mask dialog; and the two mixes as a user
// runs them, through one session of the kirrel executable.

#include "host/AnimationFiles.h"
#include "masks/MaskSupport.h"
#include "pixel/Mixing.h"
#include "support/Fixtures.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QLabel>

namespace kirrel::test {
namespace {

class MaskDialog : public FormTest {
  protected:
    std::string path(const char* name) const { return QDir(scratch.path()).filePath(name).toStdString(); }
    static QComboBox* list(panel::FormBase* f, const char* name) { return ctl<QComboBox>(f, name); }
};

TEST_F(MaskDialog, AlphaMaskSavesTheUndoBeforeComparingAndTheHostsUndoOnEveryFrame) {
    host().loadAnimation(patternFrames(4, 5, 5));
    auto* form = open("frmAlphaMask");
    EXPECT_TRUE(host().alphaShown());
    ctl<QCheckBox>(form, "chkUndoSave")->setChecked(true);
    list(form, "cboLighter")->setCurrentText("Primary Color");
    list(form, "cboDarker")->setCurrentText("Primary Color");
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>{"Please Select Two Different Sources"});
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(form->control("cmd_Run")->isEnabled());
    EXPECT_TRUE(calls("Van_SaveUndo").empty());

    list(form, "cboDarker")->setCurrentText("Main Buffer");
    choose(form, "optDirection(1)");
    list(form, "cboFrameStart")->setCurrentIndex(1);
    host().gotoFrame(3);
    click(form, "cmd_Run");
    EXPECT_EQ(calls("Van_SaveUndo").size(), 3u) << "frames 1 to 3, one each";
    EXPECT_EQ(host().currentFrame(), 3);
}

TEST_F(MaskDialog, ADamagedOrVanishedMaskIsRefusedAndTheLabelIsTheState) {
    host().loadAnimation(patternFrames(3, 5, 5));
    const QString good = QString::fromStdString(path("good.msk"));
    writeFile(good, mskHeader(5, 5, 2) + flatMaskPlane(5, 5, 200) + flatMaskPlane(5, 5, 10));
    writeFile(QString::fromStdString(path("bad.msk")), mskHeader(5, 5, 9) + flatMaskPlane(5, 5, 1));
    auto* form = open("frmAnimMask");
    EXPECT_EQ(form->windowTitle(), "Kirrel - Animated Alpha  Mask");
    EXPECT_EQ(list(form, "cboLighter")->itemText(11), "White Noise (TV Snow)");
    // One frame is refused before any test of the mask.
    list(form, "cboFrameEnd")->setCurrentIndex(0);
    click(form, "cmd_Run");
    list(form, "cboFrameEnd")->setCurrentIndex(2);
    ctl<QCheckBox>(form, "chkUndoSave")->setChecked(true);

    answerFile(path("bad.msk"));
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "No Mask Loaded");
    answerFile(good.toStdString());
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "5 X 5 at 2 Frames");
    EXPECT_FALSE(ctl<QLabel>(form, "ImageBox")->pixmap().isNull());

    // Damaged between loading and running: refused before the undo is saved.
    const std::string whole = readFile(good);
    writeFile(good, whole.substr(0, whole.size() - 1));
    const HostSnapshot before = HostSnapshot::of(host());
    click(form, "cmd_Run");
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_FALSE(undoSaved());
    QFile::remove(good);
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()),
              (std::vector<std::string>{
                  "Please select more than one frame.",
                  "The mask can't be loaded.\n\nbad.msk is damaged: it is shorter than its header says.",
                  "The mask can't be used.\n\ngood.msk is damaged: it is shorter than its header says.",
                  "File not found!\nPlease Load an Animated Mask to Proceed"}));

    // Equal sources: the undo is saved first.
    writeFile(good, whole);
    list(form, "cboDarker")->setCurrentText("Main Buffer");
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()).back(), "Please Select Two Different Sources");
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(HostSnapshot::of(host()).pictures == before.pictures);

    // An empty answer forgets the mask: the run then says so.
    answerFile("");
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "No Mask Loaded");
    EXPECT_TRUE(ctl<QLabel>(form, "ImageBox")->pixmap().isNull());
}

using MaskScript = ScriptTest;

constexpr int kW = 8, kH = 6;

// The refusals, the .msk bytes and the copies are pinned in process; the script keeps the two mixes
// a user runs from the catalogue, each over the whole animation.
TEST_F(MaskScript, BothMaskMixesRunFromTheCatalogue) {
    host::Animation anim;
    anim.frames = patternFrames(3, kW, kH, 5);
    host::writeAnimationDat(at("anim.dat"), anim);
    const host::Picture swap = patternPicture(kW, kH, 77);
    host::writePictureDat(at("swap.dat"), swap);
    krl::Plane alpha(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 4; x <= kW; ++x)
            alpha.at(x, y) = 255;
    host::writePlaneDat(at("alpha.dat"), alpha);

    const RunResult r = runScript(dir.path(), R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat",
        "swap": "swap.dat", "alpha": "alpha.dat"},
      "steps": [
        {"open": "Alpha Mask Filter"}, {"set": {"control": "cboLighter", "text": "Swap"}},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"click": "cmd_Run"}, {"dump": "mixed"}, {"close": "frmAlphaMask"},
        {"answer": [{"file": "grey.msk"}]}, {"open": "Export Anim as Animated Mask"},
        {"open": "Animated Alpha Mask Filter"},
        {"answer": [{"file": "grey.msk"}]}, {"click": "cmdLoadMask"}, {"click": "cmd_Run"},
        {"dump": "masked"}, {"screenshot": "animmask.png"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    // Alpha 0 keeps the swap picture (lighter), 255 the frame (darker), on every frame of the range.
    const auto mixed = dumped("mixed");
    ASSERT_EQ(mixed.size(), 3u);
    for (int f = 0; f < 3; ++f)
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x)
                ASSERT_EQ(mixed[f].g.at(x, y), (x < 4 ? swap : anim.frames[f]).g.at(x, y)) << f << x << y;
    EXPECT_EQ(state("mixed")["current_frame"].toInt(), 0);

    // The mask holds brightness: the mix takes its inverse as the darker source's share.
    const std::string expected = expectedMsk(mixed);
    const std::size_t planeSize = (kW + 1) * (kH + 1);
    const auto result = dumped("masked");
    ASSERT_EQ(result.size(), 3u);
    for (std::size_t f = 0; f < 3; ++f) {
        host::Picture light = mixed[f];
        krl::Plane inverted(kW, kH);
        for (std::size_t i = 0; i < planeSize; ++i)
            inverted.data()[i] = 255 - static_cast<unsigned char>(expected[12 + f * planeSize + i]);
        krl::AlphaMix(light.r, light.g, light.b, swap.r, swap.g, swap.b, inverted, kW, kH);
        EXPECT_TRUE(result[f] == light) << "frame " << f;
    }
    EXPECT_EQ(controlText(state("masked"), "frmAnimMask", "Label5"), "8 X 6 at 3 Frames");
    EXPECT_FALSE(QImage(at("animmask.png")).isNull());
}

} // namespace
} // namespace kirrel::test
