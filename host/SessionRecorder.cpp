#include "host/SessionRecorder.h"

#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "panel/Controls.h"
#include "panel/FormBase.h"

#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>

namespace kirrel::host {

namespace {

QJsonArray colourOf(std::uint32_t c) {
    return {static_cast<int>(c & 255), static_cast<int>((c >> 8) & 255), static_cast<int>((c >> 16) & 255)};
}

// A list's choice as a step plays it again: the frame lists' last entry as "last", so that the end of
// a range stays the end on an animation of another length; otherwise the entry's text.
QJsonObject listChoice(const QString& name, const QString& text, int index, int count) {
    QJsonObject set{{"control", name}};
    if ((name == "cboFrameStart" || name == "cboFrameEnd") && count > 1 && index == count - 1)
        set["index"] = "last";
    else if (!text.isEmpty())
        set["text"] = text;
    else
        set["index"] = index;
    return set;
}

} // namespace

// Answers every box as the person at the window does and notes the answer for the step that opened it.
class SessionRecorder::AnswerTap : public Responder {
  public:
    AnswerTap(SessionRecorder& recorder, Responder* inner) : recorder_(recorder), inner_(inner) {}
    void message(const std::string& text, const std::string& title) override {
        if (inner_) inner_->message(text, title);
    }
    int question(const std::string& text, const std::string& title) override {
        const int a = inner_ ? inner_->question(text, title) : 1;
        recorder_.answered({{"question", a}});
        return a;
    }
    // Only a window with unsaved work asks this; a script plays without one, so the answer is not a
    // step of it.
    int discard(const std::string& text, const std::string& title) override {
        return inner_ ? inner_->discard(text, title) : 1;
    }
    double value(const std::string& title, double minimum, double maximum) override {
        const double v = inner_ ? inner_->value(title, minimum, maximum) : -1;
        recorder_.answered({{"value", v}});
        return v;
    }
    std::string fileOpen(const std::string& title, const std::string& def,
                         const std::string& filter) override {
        std::string f = inner_ ? inner_->fileOpen(title, def, filter) : std::string();
        recorder_.answered({{"file", QString::fromStdString(f)}});
        return f;
    }
    std::string fileSave(const std::string& title, const std::string& def,
                         const std::string& filter) override {
        std::string f = inner_ ? inner_->fileSave(title, def, filter) : std::string();
        recorder_.answered({{"file", QString::fromStdString(f)}});
        return f;
    }
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& def) override {
        auto a = inner_ ? inner_->input(prompt, title, def) : std::nullopt;
        recorder_.answered({{"input", a ? QString::fromStdString(*a) : QString()}});
        return a;
    }
    void error(const std::string& text, const std::string& title) override {
        if (inner_) inner_->error(text, title);
    }

  private:
    SessionRecorder& recorder_;
    Responder* inner_;
};

SessionRecorder::SessionRecorder(HostState& host) : host_(host) {}

SessionRecorder::~SessionRecorder() {
    cancel();
}

void SessionRecorder::start(const QString& input, bool modified, const krl::Plane& inputAlpha) {
    cancel();
    recording_ = true;
    steps_ = {};
    answers_ = {};
    lastCoalesce_.clear();
    input_ = input;
    saveInput_ = input.isEmpty() || modified;
    start_ = host_.snapshot();
    // The input gives its own alpha again when it is played; any other alpha goes with the recording.
    saveAlpha_ = saveInput_ || !(host_.alphaPlane() == inputAlpha);
    primary_ = host_.primaryColor();
    secondary_ = host_.secondaryColor();
    innerResponder_ = host_.responder();
    tap_ = std::make_unique<AnswerTap>(*this, innerResponder_);
    host_.setResponder(tap_.get());
    panel::setUserStepSink(this);
}

void SessionRecorder::cancel() {
    if (!recording_) return;
    recording_ = false;
    if (panel::userStepSink() == this) panel::setUserStepSink(nullptr);
    if (host_.responder() == tap_.get()) host_.setResponder(innerResponder_);
    tap_.reset();
}

void SessionRecorder::answered(QJsonObject answer) {
    if (recording_) answers_.append(answer);
}

void SessionRecorder::add(QJsonObject step, const QString& coalesce) {
    if (!recording_) return;
    if (!answers_.isEmpty()) {
        steps_.append(QJsonObject{{"answer", answers_}});
        answers_ = {};
        lastCoalesce_.clear();
    }
    // A slider dragged or a text typed gives many values: the step keeps the last.
    if (!coalesce.isEmpty() && coalesce == lastCoalesce_ && !steps_.isEmpty())
        steps_[steps_.size() - 1] = step;
    else
        steps_.append(step);
    lastCoalesce_ = coalesce;
}

void SessionRecorder::windowStep(const QString& command, const QJsonObject& args) {
    QJsonObject step = args;
    step["window"] = command;
    const QString coalesce =
        command == "setFrameDelay" ? "delay:" + QString::number(args["frame"].toInt()) : QString();
    if (depth_ > 0)
        following_.emplace_back(step, coalesce);
    else
        add(step, coalesce);
}

void SessionRecorder::hostStep(const QString& operation, const QJsonArray& args, const QString& coalesce) {
    const QJsonObject step{{"host", operation}, {"args", args}};
    if (depth_ > 0)
        following_.emplace_back(step, coalesce);
    else
        add(step, coalesce);
}

void SessionRecorder::beginUserStep(panel::FormBase& form, QObject& control, panel::UserEvent event) {
    if (!recording_ || depth_++ > 0) return;
    following_.clear();
    const QString formName = form.objectName();
    const QString name = control.objectName();
    QJsonObject step;
    QString coalesce;
    using panel::UserEvent;
    switch (event) {
    case UserEvent::Click:
        step = {{"click", name}};
        break;
    case UserEvent::Leave:
        step = {{"leave", name}};
        break;
    case UserEvent::Open:
        if (auto* list = qobject_cast<QListWidget*>(&control); list && list->currentItem())
            step = {{"open", list->currentItem()->text()}};
        break;
    case UserEvent::Menu:
        step = {{"menu", name}};
        break;
    case UserEvent::Close:
        step = {{"close", formName}};
        break;
    case UserEvent::Change: {
        coalesce = formName + "/" + name;
        if (auto* c = qobject_cast<QComboBox*>(&control)) {
            step = {{"set", listChoice(name, c->currentText(), c->currentIndex(), c->count())}};
        } else if (auto* l = qobject_cast<QListWidget*>(&control)) {
            // The catalogue's lists are the "open" step's to choose.
            if (formName == "Mainfrm") break;
            step = {{"set", listChoice(name, l->currentItem() ? l->currentItem()->text() : QString(),
                                       l->currentRow(), l->count())}};
        } else if (auto* ck = qobject_cast<QCheckBox*>(&control)) {
            step = {{"set", QJsonObject{{"control", name},
                                        {"value", ck->checkState() == Qt::Checked            ? 1
                                                  : ck->checkState() == Qt::PartiallyChecked ? 2
                                                                                             : 0}}}};
        } else if (auto* s = qobject_cast<QAbstractSlider*>(&control)) {
            step = {{"set", QJsonObject{{"control", name}, {"value", s->value()}}}};
        } else if (auto* t = qobject_cast<QLineEdit*>(&control)) {
            step = {{"set", QJsonObject{{"control", name}, {"text", t->text()}}}};
        }
        break;
    }
    }
    if (step.isEmpty()) return;
    // Steps name their form, so that they reach it whichever form is in front when they play.
    if (event != UserEvent::Open && event != UserEvent::Close &&
        !(event == UserEvent::Menu && formName == "Mainfrm"))
        step["form"] = formName;
    pending_ = step;
    pendingCoalesce_ = coalesce;
}

void SessionRecorder::endUserStep() {
    if (!recording_ || --depth_ > 0) return;
    if (pending_) add(*pending_, pendingCoalesce_);
    pending_.reset();
    for (const auto& [step, coalesce] : following_)
        add(step, coalesce);
    following_.clear();
}

// A file beside the input is named from the input's folder, a file beside the script from the
// script's; other files keep their whole path.
QString SessionRecorder::portable(const QString& path, const QString& scriptDir) const {
    if (path.isEmpty()) return path;
    const QFileInfo file(path);
    if (!input_.isEmpty() && !saveInput_ && file.absolutePath() == QFileInfo(input_).absolutePath())
        return "$INPUT_DIR/" + file.fileName();
    const QString relative = QDir(scriptDir).relativeFilePath(file.absoluteFilePath());
    return relative.startsWith("..") ? file.absoluteFilePath() : relative;
}

QJsonObject SessionRecorder::portableStep(QJsonObject step, const QString& scriptDir) const {
    if (step.contains("file")) step["file"] = portable(step["file"].toString(), scriptDir);
    if (step.contains("answer")) {
        QJsonArray answers = step["answer"].toArray();
        for (auto a : answers) {
            QJsonObject o = a.toObject();
            if (o.contains("file")) o["file"] = portable(o["file"].toString(), scriptDir);
            a = o;
        }
        step["answer"] = answers;
    }
    return step;
}

QByteArray SessionRecorder::scriptText(const QString& scriptPath) const {
    const QFileInfo script(scriptPath);
    const QString dir = script.absolutePath();
    const QString stem = script.completeBaseName();
    QJsonObject host;
    host["animation"] = stem + ".input.dat";
    if (!saveInput_) {
        const QString relative = QDir(dir).relativeFilePath(QFileInfo(input_).absoluteFilePath());
        host["animation"] = relative.startsWith("..") ? QFileInfo(input_).absoluteFilePath() : relative;
    }
    if (saveInput_ && !start_.frames.empty()) {
        QJsonArray delays;
        for (const int d : start_.delays)
            delays.append(d);
        host["delays"] = delays;
    }
    host["swap"] = stem + ".swap.dat";
    if (saveAlpha_) host["alpha"] = stem + ".alpha.dat";
    host["primary"] = colourOf(primary_);
    host["secondary"] = colourOf(secondary_);
    host["current_frame"] = start_.current;
    // One step a line, so that a recording reads (and diffs) as a list of what the user did.
    QByteArray text =
        "{\n  \"host\": " + QJsonDocument(host).toJson(QJsonDocument::Compact) + ",\n  \"steps\": [";
    for (int i = 0; i < steps_.size(); ++i)
        text += QByteArray(i ? ",\n    " : "\n    ") +
                QJsonDocument(portableStep(steps_[i].toObject(), dir)).toJson(QJsonDocument::Compact);
    text += steps_.isEmpty() ? "]\n}\n" : "\n  ]\n}\n";
    return text;
}

std::optional<QString> SessionRecorder::stopAndSave(const QString& scriptPath) {
    const QFileInfo script(scriptPath);
    const QDir dir = script.absoluteDir();
    const QString stem = script.completeBaseName();
    try {
        writePictureDat(dir.filePath(stem + ".swap.dat"), start_.swap);
        if (saveAlpha_) writePlaneDat(dir.filePath(stem + ".alpha.dat"), start_.alpha);
        if (saveInput_) {
            Animation a;
            a.frames = start_.frames;
            a.still = start_.still;
            writeAnimationDat(dir.filePath(stem + ".input.dat"), a);
        }
    } catch (const std::exception& e) {
        return QString::fromUtf8(e.what());
    }
    QFile out(scriptPath);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || out.write(scriptText(scriptPath)) < 0)
        return "the script could not be written to " + scriptPath;
    cancel();
    return std::nullopt;
}

} // namespace kirrel::host
