// The Stretch / Squeeze dialog through a session script of the kirrel executable: its lists, its
// words for an empty slot, and every one of its eighteen options in all four shapes.

#include "support/Support.h"
#include "transitions/EveryShapeScript.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>

namespace kirrel::test {
namespace {

TEST(StretchScript, EveryOptionRunsInAllFourShapes) {
    // An empty slot first: refused with a full stop. The slot has a size of its own, so the stored
    // twins scale it.
    QTemporaryDir dir;
    const QJsonArray emptySlot{
        QJsonObject{{"set", QJsonObject{{"control", "cboTransitions"}, {"text", "Stored Animation #3"}}}},
        QJsonObject{{"click", "cmd_Run"}}};
    const EveryShapeRun r = playEveryShape(dir.path(),
                                           {"Stretch/Squeeze",
                                            "frmStretches",
                                            "cboStretchOptions",
                                            18,
                                            {"Swap", "Primary Color"},
                                            "cboTransitions"},
                                           20, 9, emptySlot);
    expectEveryShapeRan(r, 1);
    EXPECT_EQ(dialogTexts(r.end).front(), "Slot Empty.");
    EXPECT_EQ(listItems(r.end, "frmStretches", "cboTransitions"),
              (QStringList{"Swap", "Primary Color", "Stored Animation #1", "Stored Animation #2",
                           "Stored Animation #3", "Stored Animation #4"}));
    const QStringList options = listItems(r.end, "frmStretches", "cboStretchOptions");
    ASSERT_EQ(options.size(), 18);
    EXPECT_EQ(options[4], "Stretch Horizontally From Center");
    EXPECT_EQ(options.back(), "Squeeze Vertically To Center");
    EXPECT_EQ(formCaption(r.end, "frmStretches"), "Kirrel-Stretch / Squeeze");
}

} // namespace
} // namespace kirrel::test
