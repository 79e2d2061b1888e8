// The main panel as a user meets it: the catalogue, the launch conditions and questions, the menus,
// folding, and the frame count asked for when there is no animation. Quitting and closing are the
// session scripts' business.

#include "panel/Mainfrm.h"
#include "panel/Catalogue.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Panel.h"
#include "support/Support.h"

#include <QAction>
#include <QListWidget>

namespace kirrel::test {
namespace {

using panel::FormBase;
using panel::Mainfrm;

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
    QStringList items(QListWidget* l) const {
        QStringList out;
        for (int i = 0; i < l->count(); ++i)
            out << l->item(i)->text();
        return out;
    }

    Mainfrm* main = nullptr;
    QListWidget* list1 = nullptr;
    QListWidget* list2 = nullptr;
};

TEST_F(MainPanel, CatalogueListsEveryCategoryAndPluginInOrder) {
    EXPECT_EQ(main->windowTitle(), "Kirrel 1.29");
    EXPECT_EQ(items(list1),
              (QStringList{"Alpha Masks", "Transitions", "Filters", "Custom FX", "Other FX", "Utilities"}));
    EXPECT_EQ(list1->currentRow(), 0);
    EXPECT_EQ(list2->count(), 9) << "Alpha Masks is shown at load";
    std::map<QString, int> perCategory;
    for (int c = 0; c < list1->count(); ++c) {
        list1->setCurrentRow(c);
        perCategory[list1->currentItem()->text()] = list2->count();
    }
    EXPECT_EQ(perCategory["Transitions"], 21);
    EXPECT_EQ(perCategory["Filters"], 6);
    EXPECT_EQ(perCategory["Custom FX"], 3);
    EXPECT_EQ(perCategory["Other FX"], 6);
    EXPECT_EQ(perCategory["Utilities"], 11);
    list1->setCurrentRow(1);
    EXPECT_EQ(list2->item(0)->text(), "Wipes");
    EXPECT_EQ(list2->item(20)->text(), "Stretch/Squeeze");
}

TEST_F(MainPanel, PluginThatNeedsAnAnimationRefusesWithoutOneAndStaysShowing) {
    host().loadStill(host::Picture(10, 10));
    launch("Utilities", "Frame Swapper");
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_StopAnimation()", "Van_GetTotalFrames()",
                                               "Van_MessageBox(\"Must have animation in memory!\")"}));
    EXPECT_TRUE(main->isVisible());
}

TEST_F(MainPanel, QuestionRowsStopOnNo) {
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    launch("Alpha Masks", "Copy Current Frame To Alpha");
    ASSERT_EQ(calls("Van_QuestionBox").size(), 1u);
    EXPECT_EQ(calls("Van_QuestionBox")[0], "Van_QuestionBox(\"\\nOverwrite Alpha Channel with Current "
                                           "Frame?\\n\\nWarning: This cannot be undone.\")");
    EXPECT_EQ(trace.size(), 2u) << "nothing runs after the answer no";
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    launch("Custom FX", "Import CFX File");
    EXPECT_EQ(trace.back(), "Van_QuestionBox(\"\\nThis will overwrite the current buffer!\\n\\nProceed?\")");
}

TEST_F(MainPanel, DoubleClickOnEmptyListDoesNothingButStopPlayback) {
    list2->clear();
    runGuarded([this] { main->List2_DblClick(); });
    EXPECT_EQ(trace, std::vector<std::string>{"Van_StopAnimation()"});
}

TEST_F(MainPanel, ShrinkAndGrowFoldThePanel) {
    auto* minimize = main->findChild<QAction*>("menuMinimize");
    const int expanded = main->height();
    EXPECT_EQ(expanded, 3285 / 15);
    trigger("menuMinimize");
    EXPECT_EQ(minimize->text(), "[Grow]");
    EXPECT_EQ(main->height(), 600 / 15);
    trigger("menuMinimize");
    EXPECT_EQ(minimize->text(), "[Shrink]");
    EXPECT_EQ(main->height(), expanded);
}

TEST_F(MainPanel, EasterEggAndAboutHideAndShowThePanel) {
    trigger("menublank5");
    trigger("menuAbout");
    ASSERT_EQ(calls("Van_MessageBox").size(), 2u);
    EXPECT_EQ(calls("Van_MessageBox")[0], "Van_MessageBox(\"Easter Egg!\")");
    EXPECT_EQ(calls("Van_MessageBox")[1].rfind("Van_MessageBox(\"Kirrel 1.29", 0), 0u);
    EXPECT_TRUE(main->isVisible());
    trigger("menublank6");
    EXPECT_EQ(calls("Van_MessageBox").size(), 2u) << "only the first blank entry answers";
}

TEST_F(MainPanel, EnsureAnimationMakesTheCountGivenWithTheDefaultText) {
    host().loadStill(host::Picture(10, 10));
    responder.push({host::QueuedAnswer::Kind::Question, 6, {}});
    responder.push({host::QueuedAnswer::Kind::Input, 0, " 30"});
    runGuarded([this] { main->Ensure_Animation(); });
    EXPECT_EQ(host().totalFrames(), 30);
    EXPECT_EQ(main->frameCount(), 30);
    EXPECT_EQ(calls("Van_ShowScrub"), std::vector<std::string>{"Van_ShowScrub(0, 30)"});
    const auto& input = host().dialogs().back();
    EXPECT_EQ(input.kind, "input");
    EXPECT_EQ(input.text, " Create new animation");
    EXPECT_EQ(input.title, "Frame count");

    // A count of one makes nothing.
    host().loadStill(host::Picture(10, 10));
    trace.clear();
    responder.push({host::QueuedAnswer::Kind::Question, 6, {}});
    responder.push({host::QueuedAnswer::Kind::Input, 0, "1"});
    runGuarded([this] { main->Ensure_Animation(); });
    EXPECT_EQ(host().totalFrames(), 0);
    EXPECT_TRUE(calls("Van_CreateAnim").empty());
}

} // namespace
} // namespace kirrel::test
