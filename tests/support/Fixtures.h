#pragma once
// Test data and readers shared across subsystems: slot-file bytes, header numbers, pixel copies, and
// what a session script dumped (a form's caption, controls and lists; end states and animations).
// Kept apart from Support.h so that a change here rebuilds only the tests that use it.

#include "support/Support.h"

#include <QDir>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace kirrel::test {

// A slot file of n frames of bounds w x h, every byte `value`.
std::string flatSlotBytes(int n, int w, int h, char value = '\x40');
// Copies pixel (sx, sy) of `from` to (x, y) of `to`, all three planes.
void copyPixel(host::Picture& to, int x, int y, const host::Picture& from, int sx, int sy);

// What a dumped state shows of a form (its caption among it), one of its controls, that control's text
// and the items of a list. A missing form or control gives an empty object.
QJsonObject formState(const QJsonObject& state, const QString& form);
QJsonObject formControl(const QJsonObject& state, const QString& form, const QString& control);
QString controlText(const QJsonObject& state, const QString& form, const QString& control);
QStringList listItems(const QJsonObject& state, const QString& form, const QString& control);

// A scratch folder to play session scripts in, and readers for what they dumped there.
class ScriptTest : public ::testing::Test {
  protected:
    QString at(const QString& rel) const { return QDir(dir.path()).filePath(rel); }
    RunResult run(const std::string& json) const { return runScript(dir.path(), json); }
    QJsonObject state(const QString& dump) const { return readJsonObject(at(dump + "/state.json")); }
    std::vector<host::Picture> dumped(const QString& dump) const; // the frames of dump/animation.dat
    // Slot file `slot` of n flat frames (bounds w, h) in the script's temporary folder.
    void writeSlot(int slot, int n, int w, int h) const;
    std::vector<std::string> traceLines() const { return traceFileLines(at("trace.txt")); }
    QTemporaryDir dir;
};

} // namespace kirrel::test
