// Every filter dialog as it opens (its caption, the texts of its labels, boxes and check boxes, its
// sliders' ranges and start values, its lists, its preview's size, and whether it offers alpha), and
// what only a session script shows: the refusal after the animation's size changed, the frame lists
// pulling each other along, the order of an Apply, and the offer to make an animation for a range.
// What a run does to the frame shown and to a range is the in-process tests' business.

#include "filters/FilterTestSupport.h"
#include "support/Fixtures.h"

#include <QCheckBox>
#include <QFile>
#include <QJsonArray>
#include <QSlider>

#include <algorithm>

namespace kirrel::test {
namespace {

struct DialogOpening {
    const char* form;
    const char* caption;
    const char* texts;     // "control=text", separated by '|'
    const char* sliders;   // "name min max value [page step]", separated by '|'
    const char* list = ""; // a list and its entries, separated by '|'
    const char* items = "";
    int preview = 200; // the preview box's side
    bool alpha = true; // offers "Use Alpha?"
};

const DialogOpening kDialogs[] = {
    {"frmSketchSoft", "Kirrel- Sketch Filter (Soft Line)",
     "Label1=This filter makes photos look more like sketched drawings|Label2=Detail Strength: 1|"
     "chkColor=Color Sketch",
     "slider_soft 1 100 1"},
    {"frmSketchHard", "Kirrel- Sketch Filter (Hard Line)",
     "Label3=Line Strength|Label2=Detail|lblOptions=Color Options",
     "slider_LineStr 128 255 255|slider_Passes 1 100 1", "cboSketchOptions",
     "Normal (No Color)|Overlay Original|Cell Shaded|Graphic Novel"},
    {"frmToon", "Kirrel-Toonify Filter",
     "Label1=This filter makes photos look more like cartoon drawings|Label2=Filter Strength: 1|"
     "chkEdgeBoost=Edge Boost?",
     "slider_toon 1 100 1"},
    {"frmChannelThreshold", "Kirrel - Channel Threshold Filter",
     "Label1=Threshold Filter By Channel|lblRed=128|lblGreen=128|lblBlue=128|lblRGB=128",
     "RedSlider 0 255 128 5|GreenSlider 0 255 128 5|BlueSlider 0 255 128 5|RGBSlider 0 255 128 5",
     "cboMixing", "None|Default|Additive|Difference|Darken|Lighten|Multiply", 0, false},
    {"frmGreyOut", "Kirrel - GreyOut Filter", "Label1=Desaturate Filter By Channel",
     "ToleranceSlider -255 255 0", "", "", 0, false},
    {"frmNightVision", "Kirrel-NightVision Filter", "", "", "", "", 120},
};

class FilterDialogOpening : public FilterTest, public testing::WithParamInterface<DialogOpening> {};

TEST_P(FilterDialogOpening, ShowsItsControlsAndStartValues) {
    const DialogOpening& d = GetParam();
    panel::FormBase* f = open(d.form);
    EXPECT_EQ(f->windowTitle(), d.caption);
    for (const QString& t : QString(d.texts).split('|', Qt::SkipEmptyParts)) {
        const QString control = t.section('=', 0, 0);
        EXPECT_EQ(f->control(control)->property("text").toString(), t.section('=', 1))
            << control.toStdString();
    }
    for (const QString& spec : QString(d.sliders).split('|', Qt::SkipEmptyParts)) {
        const QStringList v = spec.split(' ');
        auto* slider = ctl<QSlider>(f, v[0]);
        EXPECT_EQ(QStringList({v[0], QString::number(slider->minimum()), QString::number(slider->maximum()),
                               QString::number(slider->value())}) +
                      (v.size() > 4 ? QStringList{QString::number(slider->pageStep())} : QStringList{}),
                  v);
    }
    if (*d.list) {
        auto* list = ctl<QComboBox>(f, d.list);
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items << list->itemText(i);
        EXPECT_EQ(items, QString(d.items).split('|'));
        EXPECT_EQ(list->currentIndex(), 0);
    }
    if (d.preview) { // 0: not checked
        EXPECT_EQ(ctl<QLabel>(f, "PreviewBox")->size(), QSize(d.preview, d.preview));
    }
    if (d.alpha) {
        EXPECT_EQ(ctl<QCheckBox>(f, "chkUseAlpha")->text(), "Use Alpha?");
    } else {
        EXPECT_EQ(f->control("chkUseAlpha"), nullptr);
    }
    // A frame range is offered over the whole animation, starting on the frame shown.
    EXPECT_TRUE(ctl<QRadioButton>(f, "optDirection(0)")->isChecked());
    EXPECT_EQ(ctl<QComboBox>(f, "cboFrameStart")->count(), 4);
    EXPECT_EQ(ctl<QComboBox>(f, "cboFrameEnd")->currentText(), "3");
}

INSTANTIATE_TEST_SUITE_P(Filters, FilterDialogOpening, testing::ValuesIn(kDialogs),
                         [](const testing::TestParamInfo<DialogOpening>& i) {
                             return std::string(i.param.form);
                         });

using FilterDialogScript = ScriptTest;

QJsonObject toonControl(const QJsonObject& state, const QString& name) {
    return formControl(state, "frmToon", name);
}

TEST_F(FilterDialogScript, SizeChangeIsRefusedOnceThenTheRunKeepsItsOrder) {
    const RunResult r =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [30, 20], "frames": 5, "current_frame": 4},
      "steps": [
        {"open": "Toonify Filter"},
        {"set": {"control": "cboFrameEnd", "index": 1}},
        {"set": {"control": "cboFrameStart", "index": 3}}, {"leave": "cboFrameStart"}, {"dump": "pulled"},
        {"host": "Van_CreateAnim", "args": [7]}, {"host": "Van_GotoFrame", "args": [4]},
        {"click": "cmd_Run"}, {"dump": "resized"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboFrameStart", "index": 1}}, {"set": {"control": "cboFrameEnd", "index": 2}},
        {"set": {"control": "slider_toon", "value": 4}},
        {"click": "cmd_Run"}, {"screenshot": "toon.png"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(toonControl(state("pulled"), "cboFrameEnd")["text"].toString(), "3");
    const QJsonObject resized = state("resized");
    EXPECT_EQ(dialogTexts(resized).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(toonControl(resized, "cboFrameStart")["items"].toArray().size(), 7);
    EXPECT_EQ(toonControl(resized, "cboFrameEnd")["text"].toString(), "6");

    // After the one refusal the second Apply reads where the user stands, stops the playback, saves
    // the undo, runs the range, and comes back to the frame it started on.
    const auto trace = traceLines();
    auto starts = [](const std::string& call) {
        return [call](const std::string& l) { return l.starts_with(call); };
    };
    auto it = std::find_if(trace.begin(), trace.end(), starts("Van_MessageBox"));
    it = std::find_if(it, trace.end(), starts("Van_StopAnimation"));
    ASSERT_NE(it, trace.end()) << "the second Apply runs";
    ASSERT_GE(it - trace.begin(), 2);
    EXPECT_TRUE((it - 2)->starts_with("Van_GetCurrentFrame"));
    EXPECT_TRUE((it - 1)->starts_with("Van_GetTotalFrames"));
    for (const char* call : {"Van_GetRFrame(0)", "Van_GotoFrame(1)", "Van_SetRbuffer", "Van_GotoFrame(2)",
                             "Van_GotoFrame(1)", "Van_SetProgress(0)", "Van_GotoFrame(4)", "Van_Refresh"}) {
        it = std::find_if(it, trace.end(), starts(call));
        ASSERT_NE(it, trace.end()) << call << " missing or out of order";
        ++it;
    }
    EXPECT_TRUE(trace.back().starts_with("Van_Refresh"));
    EXPECT_TRUE(QFile::exists(at("toon.png")));
}

TEST_F(FilterDialogScript, ARangeWithoutAnimationOffersToMakeOne) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [16, 12]},
      "steps": [
        {"open": "Toonify Filter"}, {"set": {"control": "optDirection(1)", "value": true}},
        {"answer": [{"question": 6}, {"input": " 4"}]}, {"click": "cmd_Run"}, {"dump": "made"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject made = state("made");
    const auto shown = dialogTexts(made);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.front(), "No Animation in memory!\n\n\nWould you like to create an animation now?");
    EXPECT_EQ(toonControl(made, "cboFrameEnd")["text"].toString(), "3");
}

} // namespace
} // namespace kirrel::test
