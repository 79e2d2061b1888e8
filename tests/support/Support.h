#pragma once
// Shared helpers for the core tests: a fresh host per test, a scratch folder, and running the
// kirrel executable on a session script.

#include "host/HostState.h"
#include "host/ScriptedResponder.h"

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

namespace kirrel::test {

// Gives every test a fresh host with a scripted responder and its own temporary folder, records the
// trace, and closes every form afterwards.
class HostTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    host::HostState& host() const { return host::runningHost(); }
    host::ScriptedResponder responder;
    QTemporaryDir scratch;
    std::vector<std::string> trace;
    std::string tempDir() const { return host::runningHost().tempDir(); }
    // Queues the answer of the next file requester ("" for a cancelled one).
    void answerFile(const std::string& path) { responder.push({host::QueuedAnswer::Kind::File, 0, path}); }
    // The trace lines that start with the given operation name.
    std::vector<std::string> calls(const std::string& name) const;
};

// The texts of the host's message boxes, in order.
std::vector<std::string> messagesOf(const host::HostState& h);

// A picture whose every pixel differs from its neighbours: value = seed + x + 3y (+ channel offset).
host::Picture patternPicture(int w, int h, int seed);

struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};
// Writes the script to dir/name (name may hold a sub-folder) and runs `kirrel --script` on it from
// dir, with --trace trace.txt in dir.
RunResult runScript(const QString& dir, const std::string& json, const std::string& name = "session.json");
std::string readFile(const QString& path);
// The texts of every box in a dumped state.json, in order.
std::vector<std::string> dialogTexts(const QJsonObject& state);
// The non-empty lines of a trace file.
std::vector<std::string> traceFileLines(const QString& path);
void writeFile(const QString& path, const std::string& bytes); // makes the folder if missing
QJsonObject readJsonObject(const QString& path);
// Little-endian 16-bit numbers, as the .dat headers hold them.
std::string int16le(std::initializer_list<int> values);
inline int lineCount(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace kirrel::test
