// kirrel: the panel of animation effects with its stand-in host, or a session script played headless.

#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "host/SampleAnimation.h"
#include "host/ScriptRunner.h"
#include "panel/EventGuard.h"
#include "panel/Panel.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

namespace {

// Headless runs print only what the user needs; the offscreen platform's notes are not that.
void quietMessages(QtMsgType type, const QMessageLogContext&, const QString& msg) {
    if (type == QtFatalMsg || (type == QtCriticalMsg && std::getenv("KIRREL_QT_MESSAGES")) ||
        std::getenv("KIRREL_QT_MESSAGES"))
        std::fprintf(stderr, "%s\n", qPrintable(msg));
}

int usageError(const char* what) {
    std::fprintf(stderr, "kirrel: %s (see kirrel --help)\n", what);
    return 2;
}

// Slots and undo files live here between runs.
std::string defaultTempDir() {
    QString base = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    if (base.isEmpty()) base = QDir::homePath() + "/.kirrel";
    const QString dir = base + "/temp";
    QDir().mkpath(dir);
    return QDir::cleanPath(dir).toStdString();
}

} // namespace

int main(int argc, char** argv) {
    QString script, trace, animation;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::fputs(kirrel::host::sessionScriptHelp(), stdout);
            return 0;
        }
        if (a == "--script" || a == "--trace") {
            if (i + 1 >= argc) return usageError((a + " needs a file").c_str());
            (a == "--script" ? script : trace) = QString::fromLocal8Bit(argv[++i]);
        } else if (!a.empty() && a[0] == '-') {
            return usageError(("unknown option " + a).c_str());
        } else {
            animation = QString::fromLocal8Bit(argv[i]);
        }
    }
    if (!trace.isEmpty() && script.isEmpty()) return usageError("--trace goes with --script");

    if (!script.isEmpty()) {
        if (!std::getenv("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(quietMessages);
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName("kirrel");
    QApplication::setQuitOnLastWindowClosed(false);

    auto& host = kirrel::host::runningHost();
    host.setAppDir(QDir::cleanPath(QApplication::applicationDirPath()).toStdString());
    host.setWallpaper(":/host/wallpaper.png");
    host.setTempDir(defaultTempDir());

    if (!script.isEmpty()) {
        const auto result = kirrel::host::runSessionScript(script, trace);
        if (!result.leftover.empty()) std::fputs(result.leftover.c_str(), stderr);
        if (result.exitCode != 0) std::fprintf(stderr, "kirrel: %s\n", result.message.c_str());
        return result.exitCode;
    }

    try {
        if (animation.isEmpty()) {
            host.loadAnimation(kirrel::host::sampleAnimation());
            host.loadSwap(kirrel::host::sampleSwapPicture());
        } else {
            auto a = kirrel::host::readAnimationFile(animation);
            if (a.frames.empty()) host.loadStill(a.still);
            else host.loadAnimation(std::move(a.frames));
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "kirrel: %s\n", e.what());
        return 1;
    }
    kirrel::setProgramEndHandler([] { QApplication::exit(0); });
    kirrel::panel::startPanel();
    if (kirrel::programEnded()) return 0;
    return QApplication::exec();
}
