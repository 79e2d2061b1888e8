// kirrel: the panel of animation effects with its stand-in host, or a session script played headless.

#include "host/BatchCommand.h"
#include "host/DemoReel.h"
#include "host/HostState.h"
#include "host/HostWindow.h"
#include "host/QtResponder.h"
#include "host/SampleAnimation.h"
#include "host/ScriptRunner.h"
#include "panel/EventGuard.h"
#include "panel/Interrupt.h"
#include "panel/Panel.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
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

bool hasDisplay() {
    for (const char* v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(v); value && *value) return true;
    return false;
}

// The window at the screen's top left, with room for the docked panel, the canvas and the buffers.
void placeWindow(QWidget& window) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    const int width = std::clamp(room.width() - 40, 900, 1560);
    const int height = std::clamp(room.height() - 80, 560, 940);
    window.resize(std::min(width, room.width()), std::min(height, room.height()));
    window.move(room.left() + 16, room.top() + 16);
}

int runWindow(const QString& animation) {
    auto& host = kirrel::host::runningHost();
    host.loadAnimation(kirrel::host::sampleAnimation());
    host.loadSwap(kirrel::host::sampleSwapPicture());
    host.renameBuffer("Sample animation");

    host.setConverterTimeoutSeconds(QSettings().value("converter/timeoutSeconds", 900).toInt());
    kirrel::host::HostWindow window(host);
    window.adoptCurrentAsDocument("Sample animation");
    kirrel::host::QtResponder responder([&window]() -> QWidget* {
        QWidget* active = QApplication::activeWindow();
        return active ? active : &window;
    });
    host.setResponder(&responder);
    placeWindow(window);
    window.show();

    // A file that cannot be read leaves the sample in place, after a message box.
    if (!animation.isEmpty())
        window.openAnimation(animation);
    else if (!QSettings().value("window/welcomeDismissed", false).toBool())
        window.setWelcomeVisible(true);

    kirrel::setProgramEndHandler([] { QApplication::exit(0); });
    // Ctrl+C in the terminal ends the program as its Quit would not: at once, but after the wait in
    // progress has stopped its converter and cleared its working files.
    QTimer interruptWatch;
    QObject::connect(&interruptWatch, &QTimer::timeout, [] {
        if (kirrel::interrupted()) QApplication::exit(128 + kirrel::interruptSignal());
    });
    interruptWatch.start(100);
    kirrel::panel::startPanel();
    int code = 0;
    if (!kirrel::programEnded()) code = QApplication::exec();
    host.setResponder(nullptr);
    return code;
}

int runDemoReel(const QString& animation) {
    const QString out = QDir::current().filePath("kirrel-demo");
    const auto result = kirrel::host::renderDemoReel(out, animation);
    if (!result.ok) {
        std::fprintf(stderr, "kirrel: the demo reel failed: %s\n", qPrintable(result.message));
        return 1;
    }
    std::fputs(qPrintable(result.message), stdout);
    return 0;
}

// `kirrel batch ...`: no window, no display needed.
int runBatch(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietMessages);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("kirrel");
    QStringList args = QCoreApplication::arguments().mid(2);
    if (args.contains("--help") || args.contains("-h")) {
        std::fputs(kirrel::host::batchCommandHelp(), stdout);
        return 0;
    }
    return kirrel::host::runBatchCommand(args, defaultTempDir());
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "batch") return runBatch(argc, argv);
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

    const bool demo = script.isEmpty() && !hasDisplay();
    if (demo)
        std::puts("kirrel: no display found (DISPLAY and WAYLAND_DISPLAY are not set); rendering a demo reel "
                  "instead.");
    if (!script.isEmpty() || demo) {
        if (!std::getenv("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(quietMessages);
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName("kirrel");
    kirrel::installInterruptHandlers();
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

    // The window's own settings (recent files, last folder); set after the temporary folder, which
    // does not depend on it.
    QApplication::setOrganizationName("Kirrel");
    QApplication::setApplicationVersion("1.29");
    if (demo) return runDemoReel(animation);
    QApplication::setStyle("Fusion");
    return runWindow(animation);
}
