// The run bracket outside a run, colour packing, and the answers the panel inspects: question 2,
// a negative value box, and the empty string of a cancelled file requester.

#include "panel/Vantry.h"
#include "support/Support.h"

namespace kirrel::test {
namespace {

using host::QueuedAnswer;
using Vantry::Vantry_Class;

class Bracket : public HostTest {
  protected:
    void expectIdle() {
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(host().pointer(), 0);
        EXPECT_FALSE(host().statusOpen());
    }
    Vantry_Class van;
};

TEST_F(Bracket, ClosingCallsOutsideARunDoNothing) {
    van.van_StatusClose();
    van.Van_Unlock();
    van.Van_RestorePointer();
    expectIdle();
    EXPECT_TRUE(host().dialogs().empty());

    // A second handle sees what the first one opened, and closing twice stays harmless.
    van.Van_Lock();
    van.Van_ChangePointer(11);
    van.van_status(50);
    Vantry_Class other;
    EXPECT_TRUE(host().locked());
    EXPECT_EQ(host().pointer(), 11);
    EXPECT_TRUE(host().statusOpen());
    for (int i = 0; i < 2; ++i) {
        other.van_StatusClose();
        other.Van_RestorePointer();
        other.Van_Unlock();
    }
    expectIdle();
}

struct ColourCase {
    int r, g, b, packed;
};

void PrintTo(const ColourCase& c, std::ostream* os) {
    *os << c.r << "," << c.g << "," << c.b;
}

class ColourPacking : public Bracket, public ::testing::WithParamInterface<ColourCase> {};

TEST_P(ColourPacking, RedLowGreenMiddleBlueHigh) {
    const ColourCase c = GetParam();
    van.Van_SetPrimaryColor(static_cast<std::uint8_t>(c.r), static_cast<std::uint8_t>(c.g),
                            static_cast<std::uint8_t>(c.b));
    van.Van_SetSecondaryColor(static_cast<std::uint8_t>(c.b), static_cast<std::uint8_t>(c.g),
                              static_cast<std::uint8_t>(c.r));
    EXPECT_EQ(van.Van_getPrimaryColor(), c.packed);
    EXPECT_EQ(van.Van_getSecondaryColor(), c.b | c.g << 8 | c.r << 16);
}

INSTANTIATE_TEST_SUITE_P(Colours, ColourPacking,
                         ::testing::Values(ColourCase{0, 0, 0, 0}, ColourCase{255, 0, 0, 255},
                                           ColourCase{0, 255, 0, 65280}, ColourCase{0, 0, 255, 16711680},
                                           ColourCase{1, 2, 3, 0x030201},
                                           ColourCase{255, 255, 255, 16777215}));

struct BoxCase {
    const char* name;
    QueuedAnswer answer;
    std::string result; // what the caller gets, as text
    std::string logged; // the answer as the dialog log keeps it (JSON)
    bool save = false;  // for a file answer: the save requester rather than the open one
};

class Boxes : public Bracket, public ::testing::WithParamInterface<BoxCase> {};

TEST_P(Boxes, AnswerReachesTheCallerAndTheLog) {
    const BoxCase& c = GetParam();
    responder.push(c.answer);
    std::string got, kind, text;
    switch (c.answer.kind) {
    case QueuedAnswer::Kind::Question:
        got = std::to_string(van.Van_QuestionBox(text = "\nClear?"));
        kind = "question";
        break;
    case QueuedAnswer::Kind::Value:
        got = std::to_string(van.Van_ValueBox(text = "Stripes", 1, 50));
        kind = "value";
        break;
    case QueuedAnswer::Kind::File:
        got = c.save ? van.Van_RequestFile_save(text = "Save GIF", "a.gif", "gif(*.gif)|*.gif")
                     : van.Van_RequestFile_open(text = "Load Mask", "", "msk(*.msk)|*.msk");
        kind = c.save ? "file_save" : "file_open";
        break;
    case QueuedAnswer::Kind::Input:
        FAIL() << "the interface has no input box";
    }
    EXPECT_EQ(got, c.result);
    ASSERT_EQ(host().dialogs().size(), 1u);
    const host::DialogRecord& d = host().dialogs().front();
    EXPECT_EQ(d.kind, kind);
    EXPECT_EQ(d.text, text);
    EXPECT_EQ(d.answer, c.logged);
    EXPECT_TRUE(responder.pending().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Answers, Boxes,
    ::testing::Values(BoxCase{"QuestionNo", {QueuedAnswer::Kind::Question, 2, {}}, "2", "2"},
                      BoxCase{"QuestionYes", {QueuedAnswer::Kind::Question, 6, {}}, "6", "6"},
                      BoxCase{"ValueBackedOut", {QueuedAnswer::Kind::Value, -1, {}}, "-1", "-1"},
                      BoxCase{"Value", {QueuedAnswer::Kind::Value, 7, {}}, "7", "7"},
                      BoxCase{"OpenCancelled", {QueuedAnswer::Kind::File, 0, ""}, "", "\"\""},
                      BoxCase{"SaveChosen",
                              {QueuedAnswer::Kind::File, 0, "/x/a \"b\".gif"},
                              "/x/a \"b\".gif",
                              "\"/x/a \\\"b\\\".gif\"",
                              true}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace kirrel::test
