#include "host/DemoReel.h"

#include "exchange/ConverterRun.h"
#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "host/HostWindow.h"
#include "host/SampleAnimation.h"
#include "host/ScriptRunner.h"
#include "panel/FormBase.h"
#include "panel/Registry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <exception>
#include <vector>

namespace kirrel::host {

namespace {

QJsonObject step(const char* key, const QJsonValue& value) {
    return QJsonObject{{key, value}};
}

QJsonObject setControl(const char* control, const QJsonObject& how) {
    QJsonObject s = how;
    s["control"] = control;
    return step("set", s);
}

// A wipe to the left into the swap picture over the middle of the animation.
QJsonArray wipeSteps(const QDir& out) {
    return {step("open", "Wipes"),
            setControl("cboTransitions", {{"index", 1}}),
            setControl("cboWipeOptions", {{"text", "Swap"}}),
            step("click", "cmd_Run"),
            step("screenshot", out.filePath("wipes.png")),
            step("close", "frmWipes")};
}

// The reel's animated GIF, made as a user makes one: the panel's GIF export with one delay for every
// frame (a tenth of a second, looping for ever), its file requester answered with demo.gif.
QJsonArray gifSteps(const QDir& out) {
    return {step("open", "Export To AnimGif"),
            setControl("chkGlobalDelay", {{"value", 1}}),
            setControl("txtDelay", {{"text", "10"}}),
            setControl("txtLoops", {{"text", "0"}}),
            step("screenshot", out.filePath("gif-export.png")),
            step("answer", QJsonArray{QJsonObject{{"file", out.filePath("demo.gif")}}}),
            step("click", "cmdSave"),
            step("close", "frmSave2AnimGif")};
}

// Why this machine cannot make the reel's GIF; empty when it can.
QString whyNoGif() {
    if (!panel::formKnown("frmSave2AnimGif")) return "this build has no GIF export";
    if (QStandardPaths::findExecutable("convert").isEmpty())
        return "ImageMagick's convert was not found on the PATH (Debian: apt-get install imagemagick)";
    const QString runner = exchange::batchRunnerProgram(runningHost().appDir());
    if (!QFileInfo(runner).isExecutable()) return "the converter's batch runner " + runner + " is missing";
    return {};
}

// The last message box of the run: what the export said when it made no file.
QString lastMessage() {
    const DialogLog& log = runningHost().dialogs();
    for (auto it = log.rbegin(); it != log.rend(); ++it)
        if (it->kind == "message" || it->kind == "error") return QString::fromStdString(it->text).trimmed();
    return "no file was written";
}

bool writeScript(const QString& path, const QJsonObject& hostSetUp, const QJsonArray& steps) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    return f.write(QJsonDocument(QJsonObject{{"host", hostSetUp}, {"steps", steps}}).toJson()) > 0;
}

void forgetForms() {
    for (panel::FormBase* f : panel::FormBase::openForms())
        delete f;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The host window over the result, halfway through the animation.
bool grabWindow(const QString& file) {
    HostState& host = runningHost();
    if (host.totalFrames() > 0) host.gotoFrame(host.totalFrames() / 2);
    HostWindow window(host);
    window.adoptCurrentAsDocument("Demo reel");
    window.resize(960, 680);
    window.show();
    QCoreApplication::processEvents();
    window.refreshFromHost();
    return window.grab().save(file);
}

} // namespace

DemoReelResult renderDemoReel(const QString& outputDir, const QString& animation) {
    QTemporaryDir work;
    if (!work.isValid()) return {false, "cannot create a temporary folder for the demo script"};
    QDir out(QDir(outputDir).absolutePath());
    if (!out.mkpath(".")) return {false, "cannot create " + out.path()};

    QJsonObject setUp{{"temp_dir", "tmp"}};
    try {
        if (animation.isEmpty()) {
            Animation sample;
            sample.frames = sampleAnimation();
            writeAnimationDat(QDir(work.path()).filePath("sample.dat"), sample);
            writePictureDat(QDir(work.path()).filePath("swap.dat"), sampleSwapPicture());
            setUp["animation"] = "sample.dat";
            setUp["swap"] = "swap.dat";
        } else {
            setUp["animation"] = QFileInfo(animation).absoluteFilePath();
        }
    } catch (const std::exception& e) {
        return {false, QString::fromStdString(e.what())};
    }

    panel::registerEverything();
    const bool canWipe = panel::formKnown("frmWipes");
    const QString noGif = whyNoGif();
    const QString gifFile = out.filePath("demo.gif");
    QFile::remove(gifFile); // a GIF of an earlier reel must not pass for this one's
    const QString script = QDir(work.path()).filePath("demo.json");

    // The full reel first; when a step cannot be played the reel is tried again without the GIF, then
    // without the wipe, so that the user always gets the animation's frames.
    struct Attempt {
        bool wipe, gif;
    };
    std::vector<Attempt> attempts{{canWipe, noGif.isEmpty()}};
    if (attempts.back().gif) attempts.push_back({canWipe, false});
    if (attempts.back().wipe) attempts.push_back({false, false});
    QString note;
    ScriptResult run;
    Attempt played{};
    for (const Attempt& a : attempts) {
        QJsonArray steps{step("screenshot", out.filePath("panel.png"))};
        if (a.wipe)
            for (const auto& s : wipeSteps(out))
                steps.append(s);
        if (a.gif)
            for (const auto& s : gifSteps(out))
                steps.append(s);
        steps.append(step("dump", out.path()));
        if (!writeScript(script, setUp, steps)) return {false, "cannot write the demo script"};
        run = runSessionScript(script);
        forgetForms();
        if (run.exitCode == 0) {
            played = a;
            break;
        }
        note += QString("(the demo script stopped at %1; trying again without the %2)\n")
                    .arg(QString::fromStdString(run.message), a.gif ? "GIF" : "wipe");
    }
    if (run.exitCode != 0) return {false, QString::fromStdString(run.message)};
    const bool window = grabWindow(out.filePath("window.png"));

    const bool wiped = played.wipe, exported = played.gif;
    const int frames = std::max(1, runningHost().totalFrames());
    QString text = QString("Demo reel written to %1\n").arg(QDir::toNativeSeparators(out.path()));
    text += QString("  frames/0000.png … frames/%1.png  the animation, %2 frame(s)%3\n")
                .arg(frames - 1, 4, 10, QChar('0'))
                .arg(frames)
                .arg(wiped ? ", wiped into the swap picture" : "");
    if (exported && QFileInfo(gifFile).size() > 0)
        text += "  demo.gif       the same animation as an animated GIF, made by the panel's GIF export\n";
    else if (!noGif.isEmpty())
        text += "  (no demo.gif: the GIF was skipped because " + noGif + ")\n";
    else if (exported)
        text += "  (no demo.gif: the GIF export failed: " + lastMessage() + ")\n";
    else
        text += "  (no demo.gif: the GIF export could not be played)\n";
    text += "  panel.png      the Kirrel panel\n";
    if (wiped) text += "  wipes.png      the Wipes dialog\n";
    if (exported) text += "  gif-export.png the GIF export dialog\n";
    if (window) text += "  window.png     the Kirrel window\n";
    text += "  animation.dat, swap.dat, alpha.dat, state.json  the host's state\n";
    return {true, note + text};
}

} // namespace kirrel::host
