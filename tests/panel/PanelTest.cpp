// The main panel as a user meets it: the catalogue, the launch conditions and questions, folding, the
// frame count asked for when there is no animation, and its skin (colours from the host's per-user
// settings, defaults without them, and the wallpaper); and what every effect dialog shares, dialog by
// dialog: the apply row under the names and captions session scripts use, the close box doing what
// "Done" does, and the frame lists filled from the animation and pulling each other along. Quitting
// and closing are the session scripts' business.

#include "panel/Panel.h"
#include "panel/Catalogue.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/HostSettings.h"
#include "panel/Mainfrm.h"
#include "panel/Skin.h"
#include "stored/StoredSupport.h"
#include "support/Forms.h"
#include "support/Support.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QListWidget>

namespace kirrel::test {
namespace {

using panel::FormBase;
using panel::Mainfrm;
using Answer = host::QueuedAnswer;

class MainPanel : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        panel::startPanel();
        main = dynamic_cast<Mainfrm*>(FormBase::find("Mainfrm"));
        ASSERT_NE(main, nullptr);
        list1 = qobject_cast<QListWidget*>(main->control("List1"));
        list2 = qobject_cast<QListWidget*>(main->control("List2"));
        trace.clear();
    }
    void launch(const QString& category, const QString& plugin) {
        list1->setCurrentItem(list1->findItems(category, Qt::MatchExactly).front());
        list2->setCurrentItem(list2->findItems(plugin, Qt::MatchExactly).front());
        runGuarded([this] { main->List2_DblClick(); });
    }
    void trigger(const char* menu) { main->findChild<QAction*>(menu)->trigger(); }

    Mainfrm* main = nullptr;
    QListWidget* list1 = nullptr;
    QListWidget* list2 = nullptr;
};

TEST_F(MainPanel, CatalogueListsEveryCategoryAndPluginInOrder) {
    EXPECT_EQ(main->windowTitle(), "Kirrel 1.29");
    const QStringList categories{"Alpha Masks", "Transitions", "Filters",
                                 "Custom FX",   "Other FX",    "Utilities"};
    const std::vector<int> counts{9, 21, 6, 3, 6, 11};
    EXPECT_EQ(list1->currentRow(), 0);
    EXPECT_EQ(list2->count(), 9) << "Alpha Masks is shown at load";
    ASSERT_EQ(list1->count(), categories.size());
    for (int c = 0; c < list1->count(); ++c) {
        list1->setCurrentRow(c);
        EXPECT_EQ(list1->currentItem()->text(), categories[c]);
        EXPECT_EQ(list2->count(), counts[static_cast<std::size_t>(c)]) << c;
    }
    list1->setCurrentRow(1);
    EXPECT_EQ(list2->item(0)->text(), "Wipes");
    EXPECT_EQ(list2->item(20)->text(), "Stretch/Squeeze");
}

TEST_F(MainPanel, LaunchesRefuseWithoutAnAnimationStopOnNoAndAnEmptyListOnlyStopsPlayback) {
    host().loadStill(host::Picture(10, 10));
    launch("Utilities", "Frame Swapper");
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_StopAnimation()", "Van_GetTotalFrames()",
                                               "Van_MessageBox(\"Must have animation in memory!\")"}));
    EXPECT_TRUE(main->isVisible());

    trace.clear();
    responder.push({Answer::Kind::Question, 2, {}});
    launch("Alpha Masks", "Copy Current Frame To Alpha");
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_StopAnimation()",
                                               "Van_QuestionBox(\"\\nOverwrite Alpha Channel with Current "
                                               "Frame?\\n\\nWarning: This cannot be undone.\")"}));
    responder.push({Answer::Kind::Question, 2, {}});
    launch("Custom FX", "Import CFX File");
    EXPECT_EQ(trace.back(), "Van_QuestionBox(\"\\nThis will overwrite the current buffer!\\n\\nProceed?\")");

    trace.clear();
    list2->clear();
    runGuarded([this] { main->List2_DblClick(); });
    EXPECT_EQ(trace, std::vector<std::string>{"Van_StopAnimation()"});
}

TEST_F(MainPanel, EnsureAnimationMakesTheCountGivenWithTheDefaultText) {
    for (const char* count : {" 30", "1"}) { // a count of one makes nothing
        host().loadStill(host::Picture(10, 10));
        trace.clear();
        responder.push({Answer::Kind::Question, 6, {}});
        responder.push({Answer::Kind::Input, 0, count});
        runGuarded([this] { main->Ensure_Animation(); });
        const bool made = std::string(count) == " 30";
        EXPECT_EQ(host().totalFrames(), made ? 30 : 0);
        EXPECT_EQ(calls("Van_ShowScrub"),
                  made ? std::vector<std::string>{"Van_ShowScrub(0, 30)"} : std::vector<std::string>{});
        if (made) {
            EXPECT_EQ(main->frameCount(), 30);
        }
        const auto& input = host().dialogs().back();
        EXPECT_EQ(input.kind, "input");
        EXPECT_EQ(input.text, " Create new animation");
        EXPECT_EQ(input.title, "Frame count");
    }
}

class Skin : public HostTest {
  protected:
    static FormBase* mainForm() {
        panel::startPanel();
        return FormBase::find("Mainfrm");
    }
    static QString listStyle() { return mainForm()->control("List1")->styleSheet(); }
    static QPixmap wallpaperTile() { return qobject_cast<QLabel*>(mainForm()->control("Image1"))->pixmap(); }
};

TEST_F(Skin, DefaultsApplyWithoutSettingsAndSettingsOverrideThem) {
    // Packed red-low: 0x665555 is red 0x55, green 0x55, blue 0x66.
    EXPECT_TRUE(listStyle().contains("#555566"));
    EXPECT_TRUE(listStyle().contains("#ffee88"));
    for (FormBase* f : FormBase::openForms())
        delete f;

    panel::overlayHostSettings({{"Textbox_Fill_Color", "255"}, {"Textbox_Text_Color", "65280"}});
    EXPECT_TRUE(listStyle().contains("#ff0000"));
    EXPECT_TRUE(listStyle().contains("#00ff00"));
    panel::overlayHostSettings({{"Ruler_Color", "blue"}});
    EXPECT_THROW(panel::readSkinSettings(), std::invalid_argument) << "a setting that is no number";
}

TEST_F(Skin, TheShippedWallpaperShowsAndAMissingOneLeavesTheFormUnpainted) {
    host().setWallpaper(QDir(scratch.path()).filePath("no-such.png").toStdString());
    EXPECT_TRUE(wallpaperTile().isNull());
    for (FormBase* f : FormBase::openForms())
        delete f;
    host().setWallpaper(":/host/wallpaper.png");
    EXPECT_FALSE(wallpaperTile().isNull()) << "the host ships a wallpaper";
    for (FormBase* f : FormBase::openForms())
        delete f;
}

// The first fourteen have frame lists. All apply with "Apply" beside "Save Undo" and "Undo", but the
// CFX player's button says "Apply CFX" and the builder's "Export CFX", without an undo pair.
const char* const kDialogs[] = {
    "frmToon",      "frmSketchSoft", "frmSketchHard",  "frmNightVision",  "frmChannelThreshold",
    "frmGreyOut",   "frmTVSnow",     "frmFlicker",     "frmGenThreshold", "frmVertHold",
    "frmFocus",     "frmAlphaMask",  "frmAnimMask",    "frmWipes",        "frmFrameSwap",
    "frmFrameCopy", "frmPingPong",   "frmAttachAnims", "frmCombineAnims", "frmCompositeAnims",
    "frmCFXPlayer", "frmCFXBuilder"};
constexpr std::size_t kWithFrameLists = 14;

// Five frames, and the panel open behind the dialog.
class WithPanel : public FormTest, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        FormTest::SetUp();
        host().loadAnimation(patternFrames(5, 6, 4));
        panel::startPanel();
    }
};
using EffectDialog = WithPanel;
using EffectDialogFrames = WithPanel;

TEST_P(EffectDialog, HasTheApplyRowAndItsCloseBoxIsDone) {
    const QString name = GetParam();
    panel::FormBase* f = open(name);
    const bool undoPair = name != "frmCFXBuilder";
    EXPECT_EQ(ctl<QPushButton>(f, "cmd_Run")->text(), name == "frmCFXPlayer" ? "Apply CFX"
                                                      : undoPair             ? "Apply"
                                                                             : "Export CFX");
    EXPECT_EQ(ctl<QPushButton>(f, "cmdCancel")->text(), "Done");
    EXPECT_EQ(f->control("chkUndoSave") != nullptr, undoPair);
    if (undoPair) {
        EXPECT_EQ(ctl<QCheckBox>(f, "chkUndoSave")->text(), "Save Undo");
        EXPECT_FALSE(ctl<QCheckBox>(f, "chkUndoSave")->isChecked());
        EXPECT_EQ(ctl<QPushButton>(f, "cmdUndo")->text(), "Undo");
    }

    f->closeByUser();
    EXPECT_EQ(panel::FormBase::find(name), nullptr);
    ASSERT_NE(panel::FormBase::front(), nullptr);
    EXPECT_EQ(panel::FormBase::front()->objectName(), "Mainfrm");
    EXPECT_TRUE(panel::FormBase::front()->isVisible());
}

TEST_P(EffectDialogFrames, ListsHoldTheWholeAnimationAndPullEachOtherAlong) {
    panel::FormBase* f = open(GetParam());
    auto* start = ctl<QComboBox>(f, "cboFrameStart");
    auto* end = ctl<QComboBox>(f, "cboFrameEnd");
    ASSERT_EQ(start->count(), 5);
    EXPECT_EQ(end->itemText(4), "4");
    EXPECT_EQ(start->currentIndex(), 0);
    EXPECT_EQ(end->currentIndex(), 4);

    start->setCurrentIndex(3);
    end->setCurrentIndex(1);
    f->leave("cboFrameStart");
    EXPECT_EQ(end->currentIndex(), 3) << "the list just left stays";
    end->setCurrentIndex(2);
    f->leave("cboFrameEnd");
    EXPECT_EQ(start->currentIndex(), 2);
}

const auto kNamed = [](const testing::TestParamInfo<const char*>& i) { return std::string(i.param); };
INSTANTIATE_TEST_SUITE_P(Dialogs, EffectDialog, testing::ValuesIn(kDialogs), kNamed);
INSTANTIATE_TEST_SUITE_P(Dialogs, EffectDialogFrames,
                         testing::ValuesIn(std::begin(kDialogs), std::begin(kDialogs) + kWithFrameLists),
                         kNamed);

} // namespace
} // namespace kirrel::test
