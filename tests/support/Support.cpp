#include "support/Support.h"

#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/HostSettings.h"
#include "panel/Trace.h"
#include "support/MediaCheck.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace kirrel::test {

void HostTest::SetUp() {
    host::runningHost() = host::HostState();
    host().setResponder(&responder);
    host().setTempDir(QDir(scratch.path()).filePath("tmp").toStdString());
    QDir().mkpath(QString::fromStdString(tempDir()));
    resetProgramEnded();
    (void)takeScriptAbort();
    panel::clearHostSettingsOverlay();
    Vantry::setTraceSink([this](const std::string& line) { trace.push_back(line); });
}

void HostTest::TearDown() {
    Vantry::setTraceSink({});
    for (panel::FormBase* f : panel::FormBase::openForms())
        delete f;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    host().setResponder(nullptr);
    panel::clearHostSettingsOverlay();
}

std::vector<std::string> HostTest::calls(const std::string& name) const {
    std::vector<std::string> out;
    for (const auto& l : trace)
        if (l.rfind(name + "(", 0) == 0) out.push_back(l);
    return out;
}

host::Picture patternPicture(int w, int h, int seed) {
    host::Picture p(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            p.r.at(x, y) = static_cast<std::uint8_t>(seed + x + 3 * y);
            p.g.at(x, y) = static_cast<std::uint8_t>(seed + 2 * x + y + 85);
            p.b.at(x, y) = static_cast<std::uint8_t>(seed + 5 * x + 7 * y + 170);
        }
    return p;
}

RunResult runScript(const QString& dir, const std::string& json, const std::string& name) {
    const QString script = QDir(dir).filePath(QString::fromStdString(name));
    writeFile(script, json);
    const ToolOutput r =
        runTool(KIRREL_EXE, {"--script", script, "--trace", QDir(dir).filePath("trace.txt")}, dir);
    return {r.code, r.out.toStdString(), r.err.toStdString()};
}

std::vector<std::string> dialogTexts(const QJsonObject& state) {
    std::vector<std::string> out;
    for (const auto& d : state["dialogs"].toArray())
        out.push_back(d.toObject()["text"].toString().toStdString());
    return out;
}

std::vector<std::string> traceFileLines(const QString& path) {
    std::vector<std::string> out;
    for (const QByteArray& l : QByteArray::fromStdString(readFile(path)).split('\n'))
        if (!l.isEmpty()) out.push_back(l.toStdString());
    return out;
}

std::string readFile(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return f.readAll().toStdString();
}

void writeFile(const QString& path, const std::string& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

QJsonObject readJsonObject(const QString& path) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(readFile(path))).object();
}

std::string int16le(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) {
        out += static_cast<char>(v & 255);
        out += static_cast<char>((v >> 8) & 255);
    }
    return out;
}

std::vector<std::string> messagesOf(const host::HostState& h) {
    std::vector<std::string> out;
    for (const auto& d : h.dialogs())
        if (d.kind == "message") out.push_back(d.text);
    return out;
}

} // namespace kirrel::test
