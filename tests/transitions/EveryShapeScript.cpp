#include "transitions/EveryShapeScript.h"

#include <QDir>
#include <QJsonDocument>

#include <algorithm>

namespace kirrel::test {

namespace {

QJsonObject setStep(const QString& control, const char* key, const QJsonValue& value) {
    return QJsonObject{{"set", QJsonObject{{"control", control}, {key, value}}}};
}

const QJsonObject kApply{{"click", "cmd_Run"}};

} // namespace

EveryShapeRun playEveryShape(const QString& dir, const EveryShapeDialog& d, int slotW, int slotH,
                             const QJsonArray& firstSteps) {
    constexpr int kSlotFrames = 6;
    writeFile(QDir(dir).filePath("tmp/AnimSlot 0.dat"), flatSlotBytes(kSlotFrames, slotW, slotH));

    EveryShapeRun r;
    QJsonArray steps{QJsonObject{{"open", d.plugin}}};
    for (const auto& s : firstSteps)
        steps.append(s);
    for (int v = 0; v < d.variants; ++v) {
        if (d.variantControl.contains("%1"))
            steps.append(setStep(d.variantControl.arg(v), "value", true));
        else if (!d.variantControl.isEmpty())
            steps.append(setStep(d.variantControl, "index", v));
        for (int direction = 0; direction < 2; ++direction) {
            for (const QString& source : d.plainSources) {
                steps.append(setStep(d.sourceList, "text", source));
                steps.append(kApply);
                ++r.plainRuns;
            }
            steps.append(setStep(d.sourceList, "text", "Stored Animation #1"));
            steps.append(kApply);
            steps.append(kApply);
            steps.append(QJsonObject{{"click", "lblToggle"}});
        }
        // ToStored from the first Start offered (N - 6, or 0 when the slot is longer): Start + 6
        // frames. FromStored from the first End offered (2): 6 - 3 frames go in front.
        const int start = std::max(r.expectedTotal - kSlotFrames, 0);
        r.expectedTold += (start + kSlotFrames != r.expectedTotal) + 1;
        r.expectedTotal = start + kSlotFrames + (kSlotFrames - 3);
    }
    steps.append(QJsonObject{{"dump", "end"}});
    const QJsonObject script{
        {"host", QJsonObject{{"temp_dir", "tmp"}, {"size", QJsonArray{16, 12}}, {"frames", 5}}},
        {"steps", steps}};
    r.result = runScript(dir, QJsonDocument(script).toJson().toStdString());
    r.end = readJsonObject(QDir(dir).filePath("end/state.json"));
    r.trace = traceFileLines(QDir(dir).filePath("trace.txt"));
    return r;
}

void expectEveryShapeRan(const EveryShapeRun& r, int otherBoxes) {
    ASSERT_EQ(r.result.exitCode, 0) << r.result.err;
    EXPECT_EQ(r.end["total_frames"].toInt(), r.expectedTotal);
    const auto texts = dialogTexts(r.end);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Animation Size Changed. Settings updated."),
              r.expectedTold);
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(r.expectedTold + otherBoxes))
        << "no refusal and no error";
    EXPECT_FALSE(r.end["locked"].toBool());
    EXPECT_GE(std::count(r.trace.begin(), r.trace.end(), "Van_Unlock()"),
              std::count(r.trace.begin(), r.trace.end(), "Van_Lock()"));
}

} // namespace kirrel::test
