// Combine, Composite and Attach as a user meets them, through session scripts of the kirrel
// executable: opened from the catalogue, run on a stored slot, and compared with results built here.

#include "host/AnimationFiles.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <QImage>
#include <QJsonObject>

namespace kirrel::test {
namespace {

using SpliceScript = ScriptTest;

TEST_F(SpliceScript, CombineCompositeAndAttachRunFromTheCatalogue) {
    host::Animation anim;
    anim.frames = patternFrames(4, 10, 6, 9);
    host::writeAnimationDat(at("anim.dat"), anim);
    const auto slot = patternFrames(4, 5, 6, 200);
    writeFile(at("tmp/AnimSlot 1.dat"), slotBytes(4, slot));
    const auto wide = patternFrames(2, 15, 6, 60); // the size the attach will give
    writeFile(at("tmp/AnimSlot 3.dat"), slotBytes(2, wide));

    const RunResult r = runScript(dir.path(), R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
      "steps": [
        {"open": "Attach to Stored"},
        {"set": {"control": "optSlot(3)", "value": true}},
        {"click": "cmd_Run"},
        {"set": {"control": "optSlot(1)", "value": true}},
        {"set": {"control": "optAttachAnim(1)", "value": true}},
        {"click": "cmd_Run"},
        {"dump": "attached"},
        {"screenshot": "attach.png"},
        {"close": "frmAttachAnims"},
        {"open": "Composite with Stored"},
        {"click": "cmd_Run"},
        {"set": {"control": "optSlot(3)", "value": true}},
        {"set": {"control": "Slider1", "value": 100}},
        {"click": "cmd_Run"},
        {"dump": "composited"},
        {"screenshot": "composite.png"},
        {"close": "frmCompositeAnims"},
        {"open": "Combine with Stored"},
        {"set": {"control": "optSlot(3)", "value": true}},
        {"set": {"control": "optCombineAnim(2)", "value": true}},
        {"set": {"control": "cboSelectFrame", "index": 1}},
        {"click": "cmd_Run"},
        {"dump": "combined"},
        {"screenshot": "combine.png"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    // Attach: slot 4 has 2 frames and is refused; slot 2 goes to the right at x = 10.
    const QJsonObject attached = state("attached");
    EXPECT_EQ(dialogTexts(attached),
              std::vector<std::string>{
                  "Stored Animation must have same frame count as current animation in memory!"});
    EXPECT_EQ(attached["width"].toInt(), 15);
    const auto joined = dumped("attached");
    ASSERT_EQ(joined.size(), 4u);
    for (int f = 0; f < 4; ++f)
        for (int y = 0; y <= 6; ++y)
            for (int x = 0; x <= 15; ++x)
                ASSERT_EQ(joined[f].b.at(x, y), x < 10 ? anim.frames[f].b.at(x, y) : slot[f].b.at(x - 10, y))
                    << f << " " << x << " " << y;

    // Composite: no slot chosen is refused; at full strength the stored frames replace the first two
    // frames, the others stay.
    const QJsonObject composited = state("composited");
    const auto texts = dialogTexts(composited);
    EXPECT_EQ(texts.back(), "Please Select a Stored Animation");
    const auto blended = dumped("composited");
    ASSERT_EQ(blended.size(), 4u);
    EXPECT_TRUE(blended[0] == wide[0]);
    EXPECT_TRUE(blended[1] == wide[1]);
    EXPECT_TRUE(blended[2] == joined[2]);
    EXPECT_TRUE(blended[3] == joined[3]);

    // Combine: after frame 1 come the two stored frames, then the rest.
    const auto combined = dumped("combined");
    const std::vector<host::Picture> expected{blended[0], blended[1], wide[0],
                                              wide[1],    blended[2], blended[3]};
    ASSERT_EQ(combined.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_TRUE(combined[i] == expected[i]) << "frame " << i;
    EXPECT_EQ(state("combined")["current_frame"].toInt(), 5);
    for (const char* shot : {"attach.png", "composite.png", "combine.png"})
        EXPECT_FALSE(QImage(at(shot)).isNull()) << shot;
}

} // namespace
} // namespace kirrel::test
