#include "host/ScriptRunner.h"

#include "host/AnimationFiles.h"
#include "host/HostExport.h"
#include "host/HostOperations.h"
#include "host/HostState.h"
#include "host/PngSequence.h"
#include "host/ScriptedResponder.h"
#include "host/StateDump.h"
#include "host/WindowCommands.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/HostSettings.h"
#include "panel/Interrupt.h"
#include "panel/LivePreview.h"
#include "panel/Panel.h"
#include "panel/Trace.h"

#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTextStream>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace kirrel::host {

namespace {

// A script error: the run stops with exit code 2 and this one line.
struct ScriptError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// An effect's error box in a script that asked to end on one.
struct EffectError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The examples in the documentation carry // comments; a script may too.
QByteArray withoutComments(const QByteArray& in) {
    QByteArray out;
    bool inString = false;
    for (qsizetype i = 0; i < in.size(); ++i) {
        const char c = in[i];
        if (inString) {
            out += c;
            if (c == '\\' && i + 1 < in.size())
                out += in[++i];
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
            out += c;
        } else if (c == '/' && i + 1 < in.size() && in[i + 1] == '/') {
            while (i < in.size() && in[i] != '\n')
                ++i;
            out += '\n';
        } else {
            out += c;
        }
    }
    return out;
}

std::uint32_t colourOf(const QJsonValue& v, const char* key) {
    const QJsonArray a = v.toArray();
    if (a.size() != 3) throw ScriptError(std::string("\"") + key + "\" must be [r, g, b]");
    return packColor(a[0].toInt(), a[1].toInt(), a[2].toInt());
}

// "delays": one number of milliseconds per frame, or one number for every frame.
std::vector<int> delaysOf(const QJsonValue& v, int frames) {
    auto one = [](const QJsonValue& d) {
        const double ms = d.toDouble(-1);
        if (!d.isDouble() || ms < 1 || ms > HostState::kMaxDelayMs)
            throw ScriptError("a delay is a number of milliseconds from 1 to " +
                              std::to_string(HostState::kMaxDelayMs));
        return static_cast<int>(ms);
    };
    if (v.isDouble()) return std::vector<int>(static_cast<std::size_t>(frames), one(v));
    const QJsonArray a = v.toArray();
    if (!v.isArray() || a.size() != frames)
        throw ScriptError("\"delays\" must hold one delay per frame (" + std::to_string(frames) + ")");
    std::vector<int> out;
    out.reserve(static_cast<std::size_t>(a.size()));
    std::transform(a.begin(), a.end(), std::back_inserter(out), one);
    return out;
}

class Runner {
  public:
    explicit Runner(const QString& scriptPath) : base_(QFileInfo(scriptPath).absoluteDir()) {}

    // Relative paths are taken from the script's folder, or from its "base"; "$INPUT_DIR/" starts a
    // path in the folder of the host block's animation, so a recording made beside one input finds
    // the files beside another.
    QString path(const QString& rel) const {
        static const QString inputDir = QStringLiteral("$INPUT_DIR/");
        if (rel.startsWith(inputDir))
            return QDir::cleanPath(inputDir_.absoluteFilePath(rel.mid(inputDir.size())));
        return QDir::cleanPath(base_.absoluteFilePath(rel));
    }
    void setBase(const QString& dir) { base_ = QDir(path(dir)); }

    // A step's "file" as a path.
    QJsonObject resolvedFile(QJsonObject step) const {
        if (step.contains("file")) step["file"] = path(step["file"].toString());
        return step;
    }

    void setUpHost(const QJsonObject& h) {
        // A misspelt setting would otherwise leave the host as it was without a word.
        static const QStringList known = {"temp_dir",      "app_dir",
                                          "animation",     "size",
                                          "frames",        "swap",
                                          "alpha",         "primary",
                                          "secondary",     "current_frame",
                                          "layer_opacity", "settings",
                                          "delays",        "converter_timeout_s"};
        for (const QString& key : h.keys())
            if (!known.contains(key)) throw ScriptError("unknown host setting \"" + key.toStdString() + "\"");
        if (h.contains("frames") && !h.contains("size")) throw ScriptError("\"frames\" goes with \"size\"");
        HostState& host = runningHost();
        const QString temp = h.contains("temp_dir") ? path(h["temp_dir"].toString()) : path("tmp");
        if (!QDir().mkpath(temp))
            throw ScriptError("cannot create the temporary folder " + temp.toStdString());
        host.setTempDir(temp.toStdString());
        if (h.contains("app_dir")) host.setAppDir(path(h["app_dir"].toString()).toStdString());
        // The paper colour comes first: an animation's transparent pixels are laid over it.
        if (h.contains("primary")) host.setPrimaryPacked(colourOf(h["primary"], "primary"));
        if (h.contains("secondary")) host.setSecondaryPacked(colourOf(h["secondary"], "secondary"));
        if (h.contains("animation")) {
            Animation a =
                readAnimationFile(path(h["animation"].toString()), ReadOptions{host.secondaryColor()});
            if (a.frames.empty())
                host.loadStill(a.still);
            else
                host.loadAnimation(std::move(a.frames), 0, a.delays);
            if (!a.alpha.empty()) host.setAlpha(a.alpha);
        } else if (h.contains("size")) {
            const QJsonArray s = h["size"].toArray();
            if (s.size() != 2) throw ScriptError("\"size\" must be [W, H]");
            const int w = s[0].toInt(), hh = s[1].toInt();
            if (w < 0 || hh < 0 || w > 16384 || hh > 16384) throw ScriptError("\"size\" is out of range");
            host.loadStill(Picture::filled(w, hh, 0xFFFFFF));
            const int frames = h["frames"].toInt(0);
            if (frames > 0) host.createAnim(frames);
        }
        if (h.contains("swap")) host.loadSwap(readPictureFile(path(h["swap"].toString())));
        if (h.contains("alpha")) {
            const krl::Plane a = readAlphaFile(path(h["alpha"].toString()));
            host.setAlpha(scalePlane(a, host.bufferWidth(), host.bufferHeight()));
        }
        if (h.contains("converter_timeout_s")) {
            const double s = h["converter_timeout_s"].toDouble(-1);
            if (s < 1 || s > 86400)
                throw ScriptError("\"converter_timeout_s\" is a number of seconds from 1 to 86400");
            host.setConverterTimeoutSeconds(static_cast<int>(s));
        }
        if (h.contains("delays")) host.setFrameDelays(delaysOf(h["delays"], host.totalFrames()));
        if (h.contains("current_frame")) host.gotoFrame(h["current_frame"].toInt());
        if (h.contains("layer_opacity")) host.setLayerOpacity(h["layer_opacity"].toInt());
        if (h.contains("settings")) {
            std::map<QString, QString> values;
            const QJsonObject s = h["settings"].toObject();
            for (auto it = s.begin(); it != s.end(); ++it)
                values[it.key()] = it.value().isString() ? it.value().toString()
                                                         : QString::number(it.value().toDouble(), 'g', 15);
            panel::overlayHostSettings(values);
        }
    }

    panel::FormBase* formFor(const QJsonObject& step) const {
        if (step.contains("form")) {
            const QString name = step["form"].toString();
            panel::FormBase* f = panel::FormBase::find(name);
            if (!f) throw ScriptError("the form " + name.toStdString() + " is not open");
            return f;
        }
        panel::FormBase* f = panel::FormBase::front();
        if (!f) throw ScriptError("no form is open");
        return f;
    }

    static QObject* controlIn(panel::FormBase* f, const QString& name) {
        QObject* c = f->controlOrAction(name);
        if (!c)
            throw ScriptError("the form " + f->objectName().toStdString() + " has no control " +
                              name.toStdString());
        return c;
    }

    void open(const QString& plugin) {
        panel::FormBase* main = panel::FormBase::find("Mainfrm");
        if (!main) throw ScriptError("the panel is not open");
        auto* cats = qobject_cast<QListWidget*>(main->control("List1"));
        auto* plugins = qobject_cast<QListWidget*>(main->control("List2"));
        if (!cats || !plugins) throw ScriptError("the panel has no catalogue");
        for (int c = 0; c < cats->count(); ++c) {
            if (cats->currentRow() != c) cats->setCurrentRow(c);
            for (int p = 0; p < plugins->count(); ++p) {
                if (plugins->item(p)->text() != plugin) continue;
                plugins->setCurrentRow(p);
                emit plugins->itemDoubleClicked(plugins->item(p));
                return;
            }
        }
        throw ScriptError("the catalogue has no plug-in \"" + plugin.toStdString() + "\"");
    }

    void set(const QJsonObject& step) {
        const QJsonObject s = step["set"].toObject();
        panel::FormBase* f = formFor(step);
        QObject* c = controlIn(f, s["control"].toString());
        auto needIndex = [&](int count) {
            // "last" picks the last entry, however many the list holds: a recorded choice of a
            // range's end plays on an animation of another length.
            if (s["index"].toString() == "last") return count - 1;
            if (s.contains("index")) {
                const int i = s["index"].toInt(-2);
                if (i < -1 || i >= count)
                    throw ScriptError("index " + std::to_string(i) + " is out of range");
                return i;
            }
            throw ScriptError("a list is set by \"index\" or \"text\"");
        };
        if (auto* cb = qobject_cast<QComboBox*>(c)) {
            if (s.contains("text")) {
                const int i = cb->findText(s["text"].toString(), Qt::MatchExactly);
                if (i < 0)
                    throw ScriptError("the list " + c->objectName().toStdString() + " has no entry \"" +
                                      s["text"].toString().toStdString() + "\"");
                cb->setCurrentIndex(i);
            } else {
                cb->setCurrentIndex(needIndex(cb->count()));
            }
        } else if (auto* lw = qobject_cast<QListWidget*>(c)) {
            if (s.contains("text")) {
                const auto found = lw->findItems(s["text"].toString(), Qt::MatchExactly);
                if (found.isEmpty())
                    throw ScriptError("the list " + c->objectName().toStdString() + " has no entry \"" +
                                      s["text"].toString().toStdString() + "\"");
                lw->setCurrentItem(found.front());
            } else {
                lw->setCurrentRow(needIndex(lw->count()));
            }
        } else if (auto* ck = qobject_cast<QCheckBox*>(c)) {
            const int v = s["value"].isBool() ? (s["value"].toBool() ? 1 : 0) : s["value"].toInt();
            ck->setCheckState(v == 1 ? Qt::Checked : v == 2 ? Qt::PartiallyChecked : Qt::Unchecked);
        } else if (auto* op = qobject_cast<QRadioButton*>(c)) {
            op->setChecked(s["value"].isBool() ? s["value"].toBool() : s["value"].toInt() != 0);
        } else if (auto* sl = qobject_cast<QAbstractSlider*>(c)) {
            sl->setValue(s["value"].toInt());
        } else if (auto* t = qobject_cast<QLineEdit*>(c)) {
            t->setText(s["text"].isString() ? s["text"].toString() : QString::number(s["value"].toDouble()));
        } else {
            throw ScriptError("the control " + c->objectName().toStdString() + " cannot be set");
        }
    }

    void click(const QJsonObject& step) {
        panel::FormBase* f = formFor(step);
        QObject* c = controlIn(f, step["click"].toString());
        if (auto* w = qobject_cast<QWidget*>(c); w && !w->isEnabled())
            throw ScriptError("the control " + c->objectName().toStdString() + " is disabled");
        if (auto* b = qobject_cast<QPushButton*>(c))
            b->click();
        else if (auto* l = qobject_cast<panel::ClickLabel*>(c))
            l->click();
        else if (auto* op = qobject_cast<QRadioButton*>(c))
            op->setChecked(true);
        else if (auto* ck = qobject_cast<QCheckBox*>(c))
            ck->click();
        else if (auto* a = qobject_cast<QAction*>(c))
            a->trigger();
        else
            throw ScriptError("the control " + c->objectName().toStdString() + " cannot be clicked");
    }

    void menu(const QJsonObject& step) {
        const QString name = step["menu"].toString();
        panel::FormBase* f = step.contains("form") ? formFor(step) : panel::FormBase::find("Mainfrm");
        if (!f) throw ScriptError("the panel is not open");
        auto* a = f->findChild<QAction*>(name);
        if (!a)
            throw ScriptError("the form " + f->objectName().toStdString() + " has no menu entry " +
                              name.toStdString());
        a->trigger();
    }

    void answer(const QJsonArray& answers) {
        for (const auto& v : answers) {
            const QJsonObject o = v.toObject();
            QueuedAnswer a{};
            if (o.contains("question")) {
                a.kind = QueuedAnswer::Kind::Question;
                a.number = o["question"].toDouble();
            } else if (o.contains("value")) {
                a.kind = QueuedAnswer::Kind::Value;
                a.number = o["value"].toDouble();
            } else if (o.contains("file")) {
                a.kind = QueuedAnswer::Kind::File;
                const QString file = o["file"].toString();
                a.text = file.isEmpty() ? std::string() : path(file).toStdString();
            } else if (o.contains("input")) {
                a.kind = QueuedAnswer::Kind::Input;
                a.text = o["input"].toString().toStdString();
            } else {
                throw ScriptError("an answer is {\"question\"}, {\"value\"}, {\"file\"} or {\"input\"}");
            }
            responder_.push(std::move(a));
        }
    }

    void closeForm(const QString& name) {
        panel::FormBase* f = panel::FormBase::find(name);
        if (!f) throw ScriptError("the form " + name.toStdString() + " is not open");
        f->closeByUser();
    }

    // File > Export Animation: the format from the file's extension, options as keys.
    void exportAnimation(const QJsonObject& step) const {
        static const QStringList keys = {"export", "loop", "quality", "transparency", "frames"};
        for (const QString& key : step.keys())
            if (!keys.contains(key)) throw ScriptError("an export step has no \"" + key.toStdString() + "\"");
        const QString file = path(step["export"].toString());
        if (step["frames"].toBool()) {
            exportFrames(file, step["transparency"].toString("alpha") == "alpha");
            return;
        }
        if (!exportFormatFor(file))
            throw ScriptError("\"export\" needs a file ending in .gif, .png, .apng, .webp, .mp4 or .webm");
        ExportOptions o;
        auto whole = [&](const char* key, int low, int high, int fallback) {
            if (!step.contains(key)) return fallback;
            const double v = step[key].toDouble(-1);
            if (!step[key].isDouble() || v < low || v > high || v != static_cast<int>(v))
                throw ScriptError(std::string("\"") + key + "\" is a whole number from " +
                                  std::to_string(low) + " to " + std::to_string(high));
            return static_cast<int>(v);
        };
        o.loop = whole("loop", 0, 65535, 0);
        o.quality = whole("quality", 0, 100, -1);
        const QString t = step["transparency"].toString("alpha");
        if (t == "none")
            o.transparency = ExportTransparency::None;
        else if (t == "paper")
            o.transparency = ExportTransparency::Paper;
        else if (t == "alpha")
            o.transparency = ExportTransparency::Alpha;
        else
            throw ScriptError("\"transparency\" is \"alpha\", \"paper\" or \"none\"");
        QDir().mkpath(QFileInfo(file).absolutePath());
        ToolProgress stop;
        stop.cancelled = [] { return interrupted(); };
        exportHostAnimation(runningHost(), file, o, stop);
    }

    // File > Save Frames as PNG: walk.png becomes walk_0000.png, walk_0001.png, ... beside it.
    static void exportFrames(const QString& file, bool withAlpha) {
        const HostState& host = runningHost();
        std::vector<Picture> frames;
        frames.reserve(static_cast<std::size_t>(std::max(1, host.totalFrames())));
        for (int f = 0; f < host.totalFrames(); ++f)
            frames.push_back(host.framePicture(f));
        if (frames.empty()) frames.push_back(host.mainPicture());
        QDir().mkpath(QFileInfo(file).absolutePath());
        bool transparent = false;
        const krl::Plane& alpha = host.alphaPlane();
        for (std::size_t i = 0; i < alpha.size() && !transparent; ++i)
            transparent = alpha.data()[i] != 255;
        writePngSequence(file, frames, withAlpha && transparent ? &alpha : nullptr);
    }

    // The host window's own commands, as its menus give them; their arguments are keys of the step.
    static void windowCommand(const QJsonObject& step) {
        const QString name = step["window"].toString();
        QJsonObject args = step;
        args.remove("window");
        try {
            if (!runWindowCommand(runningHost(), name, args))
                throw ScriptError("unknown window command \"" + name.toStdString() + "\" (" +
                                  windowCommandNames().join(", ").toStdString() + ")");
        } catch (const std::invalid_argument& e) {
            throw ScriptError(e.what());
        }
    }

    void screenshot(const QJsonObject& step) {
        panel::FormBase* f = formFor(step);
        const QString file = path(step["screenshot"].toString());
        QDir().mkpath(QFileInfo(file).absolutePath());
        if (!f->grab().save(file)) throw ScriptError("cannot write " + file.toStdString());
    }

    // Plays one step; the user's part of it runs behind the event boundary like any user action.
    void play(const QJsonObject& step) {
        auto user = [&](const std::function<void()>& action) {
            std::optional<ScriptError> scriptError;
            runGuarded([&] {
                try {
                    action();
                } catch (const ScriptError& e) {
                    scriptError = e;
                } catch (const HostOperationError& e) {
                    scriptError = ScriptError(e.what());
                }
            });
            if (scriptError) throw *scriptError;
        };
        if (step.contains("open"))
            user([&] { open(step["open"].toString()); });
        else if (step.contains("menu"))
            user([&] { menu(step); });
        else if (step.contains("set"))
            user([&] { set(step); });
        else if (step.contains("leave"))
            formFor(step)->leave(step["leave"].toString());
        else if (step.contains("click"))
            user([&] { click(step); });
        else if (step.contains("answer"))
            answer(step["answer"].toArray());
        else if (step.contains("host"))
            user([&] {
                nameAction(step["host"].toString().toStdString());
                callHostOperation(step["host"].toString(), step["args"].toArray());
            });
        else if (step.contains("dump"))
            dumpHost(runningHost(), path(step["dump"].toString()));
        else if (step.contains("screenshot"))
            screenshot(step);
        else if (step.contains("close"))
            user([&] { closeForm(step["close"].toString()); });
        else if (step.contains("export"))
            exportAnimation(step);
        else if (step.contains("window"))
            user([&] {
                nameAction(step["window"].toString().toStdString());
                windowCommand(resolvedFile(step));
            });
        else
            throw ScriptError("unknown step " +
                              QJsonDocument(step).toJson(QJsonDocument::Compact).toStdString());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    ScriptedResponder responder_;

  private:
    QDir base_;
    QDir inputDir_;
};

} // namespace

QJsonObject readSessionScript(const QString& scriptPath, std::string& error) {
    QFile file(scriptPath);
    if (!file.open(QIODevice::ReadOnly)) {
        error = "cannot read the script " + scriptPath.toStdString();
        return {};
    }
    QJsonParseError err{};
    const QJsonDocument doc = QJsonDocument::fromJson(withoutComments(file.readAll()), &err);
    if (err.error != QJsonParseError::NoError) {
        error = "the script is not valid JSON: " + err.errorString().toStdString() + " at offset " +
                std::to_string(err.offset);
        return {};
    }
    if (!doc.isObject()) {
        error = "the script must be a JSON object with \"host\" and \"steps\"";
        return {};
    }
    return doc.object();
}

ScriptResult runSessionScript(const QString& scriptPath, const QString& tracePath) {
    ScriptResult result;
    std::string error;
    const QJsonObject root = readSessionScript(scriptPath, error);
    if (!error.empty()) return {2, error, {}};
    const QStringList keys = root.keys();
    const auto unknown = std::find_if(keys.begin(), keys.end(), [](const QString& key) {
        return key != "host" && key != "steps" && key != "base" && key != "fail_on_error";
    });
    if (unknown != keys.end()) return {2, "unknown script entry \"" + unknown->toStdString() + "\"", {}};
    if (root.contains("host") && !root["host"].isObject()) return {2, "\"host\" must be an object", {}};
    if (root.contains("steps") && !root["steps"].isArray())
        return {2, "\"steps\" must be a list of steps", {}};

    std::unique_ptr<std::ofstream> trace;
    if (!tracePath.isEmpty()) {
        trace = std::make_unique<std::ofstream>(tracePath.toStdString(), std::ios::trunc);
        if (!*trace) return {2, "cannot write the trace " + tracePath.toStdString(), {}};
        Vantry::setTraceSink([t = trace.get()](const std::string& line) {
            *t << line << '\n' << std::flush;
        });
    }

    // Nobody watches a session's dialogs: their live previews would only cost time, and a preview
    // that ran whenever a step happened to take long enough would make runs differ.
    const bool previews = panel::LivePreview::allowed();
    panel::LivePreview::setAllowed(false);
    Runner runner(scriptPath);
    if (root.contains("base")) runner.setBase(root["base"].toString());
    runningHost().setResponder(&runner.responder_);
    int stepNo = 0;
    try {
        runner.setUpHost(root["host"].toObject());
        panel::startPanel();
        if (auto abort = takeScriptAbort()) throw ScriptError(*abort);
        const QJsonArray steps = root["steps"].toArray();
        for (const auto& v : steps) {
            ++stepNo;
            if (!v.isObject()) throw ScriptError("a step must be an object");
            const std::size_t boxes = runningHost().dialogs().size();
            runner.play(v.toObject());
            if (auto abort = takeScriptAbort()) throw ScriptError(*abort);
            // A batch job asks that an effect's error box end the run as a failure of its input.
            if (root["fail_on_error"].toBool())
                for (std::size_t d = boxes; d < runningHost().dialogs().size(); ++d)
                    if (runningHost().dialogs()[d].kind == "error")
                        throw EffectError(runningHost().dialogs()[d].text);
            // Ctrl+C or a polite kill: the step in progress has ended its tools and cleaned up.
            if (interrupted()) {
                result = {128 + interruptSignal(),
                          "interrupted by a signal; the steps after " + std::to_string(stepNo) +
                              " did not run",
                          {}};
                break;
            }
            if (programEnded()) break;
        }
    } catch (const EffectError& e) {
        result = {1, "step " + std::to_string(stepNo) + ": " + e.what(), {}};
    } catch (const ScriptError& e) {
        result = {
            2, (stepNo ? "step " + std::to_string(stepNo) + ": " : std::string("host: ")) + e.what(), {}};
    } catch (const std::exception& e) {
        result = {
            2, (stepNo ? "step " + std::to_string(stepNo) + ": " : std::string("host: ")) + e.what(), {}};
    }
    // A failed run says one thing only: why it failed.
    if (result.exitCode == 0)
        for (const auto& a : runner.responder_.pending())
            result.leftover += "unused answer: " + ScriptedResponder::kindName(a.kind) + "\n";
    runningHost().setResponder(nullptr);
    Vantry::setTraceSink({});
    panel::LivePreview::setAllowed(previews);
    return result;
}

const char* sessionScriptHelp() {
    return R"HELP(Usage: kirrel [ANIMATION]
       kirrel --script SESSION.json [--trace TRACE.txt]
       kirrel batch SESSION.json INPUT... --out DIR [...]   (see kirrel batch --help)

Without --script Kirrel opens its window, with ANIMATION (a .dat, a folder of PNG frames, an animated
GIF, PNG or WebP, a video, or a picture) or a built-in sample animation.

--script plays a session script headless and exits 0 when every step ran (or the program ended
itself), 2 with one line on stderr for a malformed script or a box that had no queued answer, and
128 + the signal's number after Ctrl+C (SIGINT) or SIGTERM, once the step in progress has stopped its
converter and removed its working files. An effect's own error is an error box in state.json, as in
the window, and the script goes on.
Relative paths are relative to the script's folder (or to the script's "base" entry); a path that
starts with "$INPUT_DIR/" lies in the folder of the host block's animation. With "fail_on_error": true
an effect's error box ends the run with exit code 1 and its text.

{ "host": { "temp_dir": "tmp", "app_dir": "app",
            "animation": "anim.dat" | "frames/" | "anim.gif" | "anim.png" (APNG) | "anim.webp" |
                         "clip.mp4" (or .webm, .mov, .mkv) | "picture.png",
            "size": [W, H], "frames": N,            (instead of "animation")
            "swap": "swap.dat" | "picture.png", "alpha": "alpha.dat" | "grey.png",
            "primary": [r,g,b], "secondary": [r,g,b], "current_frame": 0, "layer_opacity": 255,
            "delays": [120, 80, ...] | 100,        milliseconds per frame, or one for every frame
            "converter_timeout_s": 900,            how long one converter run may take
            "settings": { "Textbox_Fill_Color": "6706517" } },
  "steps": [
    {"open": "Wipes"}                      select the category and double-click the plug-in
    {"menu": "menuCombine"}                a menu entry of Mainfrm
    {"set": {"control": "cboTransitions", "index": 1}}   or "text": "Swap", or "value": 1 / true;
                                           "index": "last" is a list's last entry, however long
    {"leave": "cboFrameStart"}             the focus leaves a control: its validation runs
    {"click": "cmd_Run"}                   buttons, clickable labels, "cmdSave(2)"
    {"answer": [{"question": 2}, {"value": 7}, {"file": "out.gif"}, {"input": " 30"}]}
    {"host": "Van_GotoFrame", "args": [3]} a host operation, as if the user acted in the host
    {"dump": "out"}                        animation.dat, swap.dat, alpha.dat, state.json, frames/
    {"screenshot": "form.png"}             the form in front
    {"close": "frmWipes"}                  its "Done"; "Mainfrm" closes the panel
    {"window": "undo"}                     a command of the host window: "undo", "redo",
                                           "swapMainAndSwap", "copyFrameToSwap", "fillAlpha",
                                           "clearAlpha", "duplicateFrame", "deleteFrame",
                                           "setFrameDelay" ("frame", "ms"), "setDelayOfAllFrames"
                                           ("ms"), "loadSwap" and "alphaFromImage" ("file")
    {"export": "out.webp", "loop": 0, "quality": 90, "transparency": "alpha"}
                                           File > Export Animation: the format from the extension
                                           (.gif, .png or .apng, .webp, .mp4, .webm); "loop" is how
                                           often it plays (0 for ever), "quality" 0..100 for WebP
                                           (100 lossless, the default), MP4 and WebM; "transparency"
                                           "alpha" (the alpha channel), "paper" (the secondary
                                           colour) or "none"; with "frames": true, out.png is written
                                           as numbered PNG frames out_0000.png, out_0001.png, ... ] }
Add "form": "frmX" to a step to address a form that is not in front.
.dat layouts (little-endian int16): animation: Frames, W, H, then R, G, B planes per frame (Frames 0:
one still picture); swap: W, H, R, G, B; alpha: W, H, one plane. W and H are upper bounds: a plane
holds (W+1) x (H+1) bytes, x fastest.
state.json holds the host's state: frames, size, colours, "delays" (milliseconds per frame), "history"
({"undo": labels of the steps Edit > Undo takes back, oldest first, "redo": those Edit > Redo brings
again, the next first}), the boxes shown ("dialogs") and the open forms with their controls.
Every step that changes the animation, its delays, the alpha channel or the swap picture is one undo
step, named after the form or command ("Wipes", "Open AnimGif").
--trace writes one line per host call: Name(arg, ...).
The dialogs' live previews do not run in a session script.
)HELP";
}

} // namespace kirrel::host
