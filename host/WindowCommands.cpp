#include "host/WindowCommands.h"

#include "host/AnimationFiles.h"
#include "host/HostState.h"

#include <QJsonValue>

#include <functional>
#include <map>
#include <stdexcept>

namespace kirrel::host {

namespace {

using Command = std::function<void(HostState&, const QJsonObject&)>;

int wholeArg(const QJsonObject& args, const char* key, int lo, int hi) {
    const double v = args[key].toDouble(-1e18);
    if (!args[key].isDouble() || v < lo || v > hi || v != static_cast<int>(v))
        throw std::invalid_argument(std::string("\"") + key + "\" is a whole number from " +
                                    std::to_string(lo) + " to " + std::to_string(hi));
    return static_cast<int>(v);
}

QString fileArg(const QJsonObject& args) {
    QString f = args["file"].toString();
    if (f.isEmpty()) throw std::invalid_argument("\"file\" names the picture to read");
    return f;
}

// The host's own undo of one picture is kept for its automation's sake; the history is what undoes.
void alphaChanged(HostState& h) {
    h.alphaOn();
    h.initMarquee();
}

const std::map<QString, Command>& commands() {
    static const std::map<QString, Command> table = {
        {"undo", [](HostState& h, const QJsonObject&) { h.undo(); }},
        {"redo", [](HostState& h, const QJsonObject&) { h.redo(); }},
        {"swapMainAndSwap",
         [](HostState& h, const QJsonObject&) {
             h.saveUndo();
             h.swapMainAndSwap();
         }},
        {"copyFrameToSwap", [](HostState& h, const QJsonObject&) { h.copyFrameToSwap(); }},
        {"fillAlpha",
         [](HostState& h, const QJsonObject&) {
             h.saveUndo();
             h.fillAlpha(255);
         }},
        {"clearAlpha",
         [](HostState& h, const QJsonObject&) {
             h.saveUndo();
             h.fillAlpha(0);
         }},
        {"duplicateFrame",
         [](HostState& h, const QJsonObject&) {
             if (h.totalFrames() == 0) return;
             const int f = h.currentFrame();
             h.insertFrame(f);
             h.gotoFrame(f + 1);
         }},
        {"deleteFrame", [](HostState& h, const QJsonObject&) { h.deleteFrame(h.currentFrame()); }},
        {"setFrameDelay",
         [](HostState& h, const QJsonObject& a) {
             h.setFrameDelay(wholeArg(a, "frame", 0, std::max(0, h.totalFrames() - 1)),
                             wholeArg(a, "ms", 1, HostState::kMaxDelayMs));
         }},
        {"setDelayOfAllFrames",
         [](HostState& h, const QJsonObject& a) {
             const int ms = wholeArg(a, "ms", 1, HostState::kMaxDelayMs);
             h.setFrameDelays(std::vector<int>(static_cast<std::size_t>(h.totalFrames()), ms));
         }},
        {"loadSwap", [](HostState& h, const QJsonObject& a) { h.loadSwap(readPictureFile(fileArg(a))); }},
        {"alphaFromImage",
         [](HostState& h, const QJsonObject& a) {
             const krl::Plane alpha = readAlphaFile(fileArg(a));
             h.saveUndo();
             h.setAlpha(scalePlane(alpha, h.bufferWidth(), h.bufferHeight()));
             alphaChanged(h);
         }},
    };
    return table;
}

} // namespace

bool runWindowCommand(HostState& host, const QString& name, const QJsonObject& args) {
    const auto it = commands().find(name);
    if (it == commands().end()) return false;
    it->second(host, args);
    return true;
}

QStringList windowCommandNames() {
    QStringList names;
    for (const auto& [name, command] : commands())
        names << name;
    return names;
}

} // namespace kirrel::host
