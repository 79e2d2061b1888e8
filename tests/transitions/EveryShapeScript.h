#pragma once
// The session script every transition dialog is put through: each variant, in each direction, an
// Apply per plain source, then two with the first slot. When the first splice has lengthened the
// animation the second Apply only tells so; otherwise it splices once more, to the same length.

#include "support/Fixtures.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace kirrel::test {

struct EveryShapeDialog {
    QString plugin; // the catalogue's text
    QString form;
    // The variant list (chosen by index), or option buttons as a name with %1 (set to true).
    QString variantControl;
    int variants = 1;
    QStringList plainSources = {"Swap"};
    QString sourceList = "cboTransitions";
};

struct EveryShapeRun {
    RunResult result;
    QJsonObject end; // the state dumped after the last step
    std::vector<std::string> trace;
    int expectedTotal = 5;
    int expectedTold = 0; // "Animation Size Changed. Settings updated." boxes
    int plainRuns = 0;
};

// Writes slot 0 (six flat frames of bounds slotW x slotH) into dir's temporary folder and plays the
// script on a host of five 16 x 12 frames; firstSteps are played right after the dialog opens.
EveryShapeRun playEveryShape(const QString& dir, const EveryShapeDialog& d, int slotW = 16, int slotH = 12,
                             const QJsonArray& firstSteps = {});

// The frame count and the size-changed boxes came out as counted, no other box appeared but
// `otherBoxes`, and every lock taken was let go.
void expectEveryShapeRan(const EveryShapeRun& r, int otherBoxes = 0);

} // namespace kirrel::test
