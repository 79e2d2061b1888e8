// The sprite sheet: the grid rule, where each frame lands, and the dialog leaving the sheet in the
// main buffer.

#include "exchange/SpriteSheet.h"
#include "support/Forms.h"

namespace kirrel::test {
namespace {

TEST(SpriteGrid, RoundedRootThenAColumnThenARow) {
    const int cases[][3] = {{1, 1, 1},  {2, 1, 2},  {3, 2, 2},  {5, 2, 3},  {9, 3, 3},
                            {10, 3, 4}, {12, 3, 4}, {13, 4, 4}, {16, 4, 4}, {17, 4, 5}};
    for (const auto& c : cases) {
        const exchange::SpriteGrid g = exchange::spriteGrid(c[0]);
        EXPECT_EQ(g.rows, c[1]) << c[0] << " frames";
        EXPECT_EQ(g.cols, c[2]) << c[0] << " frames";
    }
    for (int n = 1; n <= 500; ++n) {
        const exchange::SpriteGrid g = exchange::spriteGrid(n);
        EXPECT_GE(g.rows * g.cols, n) << "every frame has a cell";
        EXPECT_LT(g.rows * g.cols - n, g.cols) << "never a whole row of unused cells";
    }
}

class SpriteSheet : public FormTest {
  protected:
    // Five flat frames of 3 x 2 pixels; frame f has the value 10 f + 1 in red, + 2 green, + 3 blue.
    void SetUp() override {
        FormTest::SetUp();
        std::vector<host::Picture> frames;
        for (int f = 0; f < 5; ++f)
            frames.push_back(
                host::Picture::filled(3, 2, host::packColor(10 * f + 1, 10 * f + 2, 10 * f + 3)));
        host().loadAnimation(frames, 2);
    }
};

TEST_F(SpriteSheet, FramesFillTheRowsInOrderAndUnusedCellsStayBlack) {
    Vantry::Vantry_Class van;
    const exchange::Sheet s = exchange::buildSheet(van, 3, 2, 5, exchange::spriteGrid(5));
    ASSERT_EQ(s.r.width(), 9);
    ASSERT_EQ(s.r.height(), 4);
    // Cells 3 wide and 2 high: frames 0, 1, 2 on the first row, 3 and 4 on the second.
    const std::pair<int, int> where[] = {{1, 1}, {4, 0}, {7, 1}, {0, 3}, {5, 2}};
    for (int f = 0; f < 5; ++f) {
        EXPECT_EQ(s.r.at(where[f].first, where[f].second), 10 * f + 1) << f;
        EXPECT_EQ(s.b.at(where[f].first, where[f].second), 10 * f + 3) << f;
    }
    EXPECT_EQ(s.g.at(7, 3), 0) << "the sixth cell is unused";
    EXPECT_EQ(s.r.at(8, 3), 0);
}

TEST_F(SpriteSheet, TheDialogPutsTheSheetIntoTheMainBuffer) {
    panel::FormBase* form = open("frmSpriteSheet");
    EXPECT_EQ(text(form, "lblFrames"), "Frames: 5");
    EXPECT_EQ(text(form, "lblRows"), "Rows: 2");
    EXPECT_EQ(text(form, "lblCols"), "Columns: 3");
    apply(form);
    EXPECT_EQ(host().bufferWidth(), 9);
    EXPECT_EQ(host().bufferHeight(), 4);
    Vantry::Vantry_Class van;
    EXPECT_EQ(van.Van_GetRBuffer().at(4, 3), 41);
    EXPECT_EQ(text(form, "lblFrames"), "Frames: 0") << "the labels follow the host after the run";
    EXPECT_TRUE(form->control("cmd_Run")->isEnabled());
    EXPECT_EQ(calls("Van_NewBuffer"), (std::vector<std::string>{"Van_NewBuffer(9, 4)"}));
}

TEST_F(SpriteSheet, WithoutAnAnimationTheDialogOffersToMakeOne) {
    host().loadStill(host::Picture::filled(3, 2, 0));
    panel::FormBase* form = open("frmSpriteSheet");
    responder.push({host::QueuedAnswer::Kind::Question, 2, ""});
    apply(form);
    ASSERT_FALSE(host().dialogs().empty());
    EXPECT_EQ(host().dialogs().back().text,
              "No Animation in memory!\n\n\nWould you like to create an animation now?");
    EXPECT_EQ(host().bufferWidth(), 3) << "nothing changed";
}

} // namespace
} // namespace kirrel::test
