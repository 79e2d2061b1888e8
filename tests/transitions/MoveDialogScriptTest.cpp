// The Rows/Columns, Crosses, Boxes and Doors dialogs through session scripts of the kirrel
// executable: their lists, captions and empty-slot words, and every variant in all four shapes.

#include "support/Support.h"
#include "transitions/EveryShapeScript.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>

namespace kirrel::test {
namespace {

struct MoveDialog {
    const char* plugin;
    const char* form;
    const char* caption;
    const char* variantList;
    QStringList variants;
    int sources;
    const char* slotEmpty;
};

void PrintTo(const MoveDialog& d, std::ostream* os) {
    *os << d.form;
}

const MoveDialog kDialogs[] = {
    {"Rows/Columns",
     "frmRowsColumns",
     "Kirrel-Rows and Columns",
     "cboRCOptions",
     {"Row Open", "Row Close", "Column Open", "Column Close"},
     14,
     "Slot Empty."},
    {"Crosses",
     "frmCrosses",
     "Kirrel-Crosses",
     "cboCrossOptions",
     {"Cross Open", "Cross Close"},
     14,
     "Slot Empty"},
    {"Boxes", "frmBoxes", "Kirrel-Boxes", "cboBoxOptions", {"Box Open", "Box Close"}, 14, "Slot Empty"},
    {"Doors",
     "frmDoors",
     "Kirrel-Doors",
     "cboDoorOptions",
     {"Horizontal Door Open", "Horizontal Door Close", "Vertical Door Open", "Vertical Door Close"},
     6,
     "Slot Empty"},
};

class MoveDialogScript : public ScriptTest, public testing::WithParamInterface<MoveDialog> {
  protected:
    // Whether frame k of a dumped animation is all of one colour.
    bool frameIs(const QString& dump, std::size_t k, int r, int g, int b) const {
        const auto frames = dumped(dump);
        if (k >= frames.size()) return false;
        const host::Picture& p = frames[k];
        for (int y = 0; y <= p.r.height(); ++y)
            for (int x = 0; x <= p.r.width(); ++x)
                if (p.r.at(x, y) != r || p.g.at(x, y) != g || p.b.at(x, y) != b) return false;
        return true;
    }
};

TEST_P(MoveDialogScript, ListsCaptionDirectionsAndTheWordsForAnEmptySlot) {
    // The first variant over the whole range from the primary colour, towards it and back, then an
    // empty slot.
    const MoveDialog& d = GetParam();
    auto set = [](const char* text) {
        return QJsonObject{{"set", QJsonObject{{"control", "cboTransitions"}, {"text", text}}}};
    };
    const QJsonObject apply{{"click", "cmd_Run"}};
    const QJsonObject script{
        {"host", QJsonObject{{"temp_dir", "tmp"},
                             {"size", QJsonArray{20, 15}},
                             {"frames", 5},
                             {"primary", QJsonArray{40, 90, 160}}}},
        {"steps", QJsonArray{QJsonObject{{"open", d.plugin}}, QJsonObject{{"dump", "opened"}},
                             set("Primary Color"), apply, QJsonObject{{"dump", "to"}},
                             QJsonObject{{"click", "lblToggle"}}, apply, QJsonObject{{"dump", "from"}},
                             set("Stored Animation #3"), apply, QJsonObject{{"dump", "empty"}}}}};
    const RunResult r = runScript(dir.path(), QJsonDocument(script).toJson().toStdString());
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject opened = state("opened");
    EXPECT_EQ(formCaption(opened, d.form), d.caption);
    EXPECT_EQ(listItems(opened, d.form, d.variantList), d.variants);
    EXPECT_EQ(formControl(opened, d.form, d.variantList)["index"].toInt(), 0);
    const QStringList sources = listItems(opened, d.form, "cboTransitions");
    ASSERT_EQ(sources.size(), d.sources);
    EXPECT_EQ(sources.mid(0, 2), (QStringList{"Swap", "Primary Color"}));
    EXPECT_EQ(sources.back(), "Stored Animation #4");

    // Each opening variant's To run ends on the source and its From run starts on it.
    EXPECT_TRUE(frameIs("to", 0, 255, 255, 255)) << "frame Start stays as it was";
    EXPECT_TRUE(frameIs("to", 4, 40, 90, 160));
    EXPECT_TRUE(frameIs("from", 0, 40, 90, 160));

    const QJsonObject empty = state("empty");
    EXPECT_EQ(dialogTexts(empty), (std::vector<std::string>{d.slotEmpty}));
    EXPECT_EQ(empty["total_frames"].toInt(), 5);
    EXPECT_FALSE(empty["locked"].toBool());
}

TEST_P(MoveDialogScript, EveryVariantRunsInAllFourShapes) {
    // Plain runs from the swap, the primary colour and (where offered) a filtered copy of the frame.
    const MoveDialog& d = GetParam();
    QStringList plain = {"Swap", "Primary Color"};
    if (d.sources == 14) plain << "Green & Blue Channels";
    const EveryShapeRun r = playEveryShape(
        dir.path(), {d.plugin, d.form, d.variantList, static_cast<int>(d.variants.size()), plain});
    expectEveryShapeRan(r);

    // Every plain run and every splice took and let go of the host's lock.
    const auto trace = traceFileLines(at("trace.txt"));
    const auto locks = std::count(trace.begin(), trace.end(), "Van_Lock()");
    const auto unlocks = std::count(trace.begin(), trace.end(), "Van_Unlock()");
    EXPECT_GE(unlocks, locks);
    EXPECT_GE(locks, r.plainRuns + d.variants.size() * 2);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, MoveDialogScript, testing::ValuesIn(kDialogs),
                         [](const testing::TestParamInfo<MoveDialog>& i) {
                             return std::string(i.param.form);
                         });

} // namespace
} // namespace kirrel::test
