// Each new filter run from a session script, as a user works: opened from the catalogue, applied to
// the frame shown and then to a range, with the frames outside left alone, the host back on the
// frame the user stood on, and a screenshot of the dialog taken at the end.

#include "host/AnimationFiles.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QImage>

namespace kirrel::test {
namespace {

struct ScriptCase {
    const char* entry; // the catalogue's text
    const char* form;
    const char* setUp; // steps that set the dialog's parameters, each followed by a comma
};

class FilterRunScript : public ScriptTest, public testing::WithParamInterface<ScriptCase> {
  protected:
    void SetUp() override {
        QDir().mkpath(at("frames"));
        for (int f = 0; f < 4; ++f) {
            const host::Picture p = patternPicture(40, 30, 37 * f);
            QImage image(40, 30, QImage::Format_RGB32);
            for (int y = 0; y < 30; ++y)
                for (int x = 0; x < 40; ++x)
                    image.setPixel(x, y, qRgb(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)));
            ASSERT_TRUE(image.save(at(QString("frames/%1.png").arg(f, 4, 10, QChar('0')))));
        }
    }
    int currentFrameIn(const QString& dump) const {
        return readJsonObject(at(dump + "/state.json"))["current_frame"].toInt(-1);
    }
};

TEST_P(FilterRunScript, RunsOnTheFrameShownAndOnARange) {
    const ScriptCase c = GetParam();
    const std::string script =
        std::string(R"JS({"host": {"temp_dir": "tmp", "animation": "frames/", "current_frame": 1},
      "steps": [
        {"open": ")JS") +
        c.entry + R"JS("},
        )JS" +
        c.setUp + R"JS(
        {"click": "cmd_Run"},
        {"dump": "one"},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboFrameStart", "index": 2}},
        {"set": {"control": "cboFrameEnd", "index": 3}},
        {"click": "cmd_Run"},
        {"dump": "range"},
        {"screenshot": "dialog.png"},
        {"close": ")JS" +
        c.form + R"JS("}]})JS";
    const RunResult r = runScript(dir.path(), script);
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const auto original = host::readAnimationFile(at("frames")).frames;
    const auto one = dumped("one");
    const auto range = dumped("range");
    ASSERT_EQ(original.size(), 4u);
    ASSERT_EQ(one.size(), 4u);
    ASSERT_EQ(range.size(), 4u);
    EXPECT_NE(one[1], original[1]) << "the frame shown is filtered";
    for (int f : {0, 2, 3})
        EXPECT_EQ(one[f], original[f]) << "frame " << f;
    EXPECT_EQ(range[0], original[0]);
    EXPECT_EQ(range[1], one[1]);
    for (int f : {2, 3})
        EXPECT_NE(range[f], original[f]) << "frame " << f;
    EXPECT_EQ(currentFrameIn("one"), 1);
    EXPECT_EQ(currentFrameIn("range"), 1) << "the user is left on the frame they stood on";
    EXPECT_FALSE(QImage(at("dialog.png")).isNull());
}

INSTANTIATE_TEST_SUITE_P(
    Filters, FilterRunScript,
    testing::Values(ScriptCase{"Sketch Filter (Soft Line)", "frmSketchSoft",
                               R"({"set": {"control": "slider_soft", "value": 3}},)"},
                    ScriptCase{"Sketch Filter (Hard Line)", "frmSketchHard",
                               R"({"set": {"control": "cboSketchOptions", "text": "Cell Shaded"}},)"},
                    ScriptCase{"Channel Threshold", "frmChannelThreshold",
                               R"({"set": {"control": "chkRed", "value": 1}},
                                  {"set": {"control": "cboMixing", "text": "Darken"}},)"},
                    ScriptCase{"GreyOut", "frmGreyOut",
                               R"({"set": {"control": "chkBlue", "value": true}},
                                  {"set": {"control": "ToleranceSlider", "value": 90}},)"}),
    [](const testing::TestParamInfo<ScriptCase>& info) { return std::string(info.param.form); });

} // namespace
} // namespace kirrel::test
