// The trace is what the other parts' tests compare runs against, so its format is exact: one line
// per call in call order, numbers as they are, strings quoted, planes by their upper bounds.

#include "panel/Vantry.h"
#include "support/Support.h"

namespace kirrel::test {
namespace {

TEST_F(HostTest, TraceWritesEveryCallInOrderAndExactly) {
    host().loadAnimation(
        {patternPicture(4, 3, 0), patternPicture(4, 3, 1), patternPicture(4, 3, 2), patternPicture(4, 3, 3)});
    responder.push({host::QueuedAnswer::Kind::Value, 4, {}});
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    responder.push({host::QueuedAnswer::Kind::File, 0, ""});
    Vantry::Vantry_Class van;
    van.Van_BufferHeight();
    van.Van_BufferWidth();
    van.Van_GotoFrame(3);
    const krl::Plane r = van.Van_GetRBuffer();
    van.Van_SetRbuffer(r);
    van.Van_SetGFrame(r, 2);
    van.Van_GetBFrame(1);
    van.van_status(50);
    van.van_status(100.0 / 3);
    van.van_status(12.5);
    van.Van_CreateAnim(30.0);
    van.Van_CreateAnimAdv(5, 2);
    van.Van_SetPrimaryColor(255, 0, 7);
    van.Van_ValueBox("Number of \"Stripes\"", 1, -50);
    van.Van_MessageBox("Slot Empty");
    van.Van_QuestionBox("\nClear Animation Undo file?");
    van.Van_RequestFile_open("Open", "a\\b.msk", "msk(*.msk)|*.msk");
    van.Van_SetAbuffer(krl::Plane(0, 0));
    van.van_StatusClose();

    const std::vector<std::string> expected = {
        "Van_BufferHeight()",
        "Van_BufferWidth()",
        "Van_GotoFrame(3)",
        "Van_GetRBuffer()",
        "Van_SetRbuffer(plane(4,3))",
        "Van_SetGFrame(plane(4,3), 2)",
        "Van_GetBFrame(1)",
        "van_status(50)",
        "van_status(33.333333333333336)",
        "van_status(12.5)",
        "Van_CreateAnim(30)",
        "Van_CreateAnimAdv(5, 2)",
        "Van_SetPrimaryColor(255, 0, 7)",
        "Van_ValueBox(\"Number of \\\"Stripes\\\"\", 1, -50)",
        "Van_MessageBox(\"Slot Empty\")",
        "Van_QuestionBox(\"\\nClear Animation Undo file?\")",
        "Van_RequestFile_open(\"Open\", \"a\\\\b.msk\", \"msk(*.msk)|*.msk\")",
        "Van_SetAbuffer(plane(0,0))",
        "van_StatusClose()",
    };
    EXPECT_EQ(trace, expected);
}

} // namespace
} // namespace kirrel::test
