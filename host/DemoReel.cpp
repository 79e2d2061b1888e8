#include "host/DemoReel.h"

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
#include <QTemporaryDir>

#include <exception>

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
    QJsonArray steps{step("screenshot", out.filePath("panel.png"))};
    if (canWipe)
        for (const auto& s : wipeSteps(out))
            steps.append(s);
    steps.append(step("dump", out.path()));

    const QString script = QDir(work.path()).filePath("demo.json");
    if (!writeScript(script, setUp, steps)) return {false, "cannot write the demo script"};
    ScriptResult run = runSessionScript(script);
    QString note;
    if (run.exitCode != 0 && canWipe) {
        // The reel still shows the animation when the wipe cannot be played.
        note = "(the wipe could not be played: " + QString::fromStdString(run.message) + ")\n";
        forgetForms();
        QJsonArray plain{step("screenshot", out.filePath("panel.png")), step("dump", out.path())};
        writeScript(script, setUp, plain);
        run = runSessionScript(script);
    }
    if (run.exitCode != 0) return {false, QString::fromStdString(run.message)};
    forgetForms();
    const bool window = grabWindow(out.filePath("window.png"));

    const int frames = std::max(1, runningHost().totalFrames());
    QString text = QString("Demo reel written to %1\n").arg(QDir::toNativeSeparators(out.path()));
    text += QString("  frames/0000.png … frames/%1.png  the animation, %2 frame(s)%3\n")
                .arg(frames - 1, 4, 10, QChar('0'))
                .arg(frames)
                .arg(canWipe && note.isEmpty() ? ", wiped into the swap picture" : "");
    text += "  panel.png      the Kirrel panel\n";
    if (canWipe && note.isEmpty()) text += "  wipes.png      the Wipes dialog\n";
    if (window) text += "  window.png     the Kirrel window\n";
    text += "  animation.dat, swap.dat, alpha.dat, state.json  the host's state\n";
    return {true, note + text};
}

} // namespace kirrel::host
