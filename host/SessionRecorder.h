#pragma once
// Tools > Record Session: every action the user takes in the panel and its forms (opening a plug-in,
// setting a control, leaving a field, clicking, answering a box or a file requester) and every
// command of the window that changes the pictures (going to a frame, the swap picture, colours,
// alpha, frames and their delays) becomes a step of a session script, the same format
// `kirrel --script` plays. The host block names the animation the recording started from, as the
// input a batch replaces, with what else the session started from: the swap picture, the alpha
// channel where it is not the input's own, the colours and the frame shown.

#include "host/History.h"
#include "host/Responder.h"
#include "panel/UserSteps.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kirrel::host {

class HostState;

class SessionRecorder : public panel::UserStepSink {
  public:
    explicit SessionRecorder(HostState& host);
    ~SessionRecorder() override;

    // Starts recording from the host as it is now. `input` is the file the animation came from; it
    // is empty (or `modified` is true) when the animation is not that file, and then the animation
    // as it stands is saved beside the recording as its input.
    void start(const QString& input, bool modified, const krl::Plane& inputAlpha);
    bool recording() const { return recording_; }
    int stepCount() const { return steps_.size(); }
    // Stops and writes the script (and the pictures it starts from) beside `scriptPath`; the reason
    // when it could not be written.
    std::optional<QString> stopAndSave(const QString& scriptPath);
    void cancel();

    // A command of the window (see WindowCommands.h), a host operation ("Van_GotoFrame" with its
    // arguments). Consecutive steps of the same `coalesce` key keep only the last.
    void windowStep(const QString& command, const QJsonObject& args = {});
    void hostStep(const QString& operation, const QJsonArray& args, const QString& coalesce = {});

    // From the panel (UserStepSink).
    void beginUserStep(panel::FormBase& form, QObject& control, panel::UserEvent event) override;
    void endUserStep() override;

    // The text of the script for `scriptPath` (paths relative to it where they can be).
    QByteArray scriptText(const QString& scriptPath) const;

  private:
    class AnswerTap;
    void add(QJsonObject step, const QString& coalesce);
    void answered(QJsonObject answer);
    QString portable(const QString& path, const QString& scriptDir) const;
    QJsonObject portableStep(QJsonObject step, const QString& scriptDir) const;

    HostState& host_;
    bool recording_ = false;
    QJsonArray steps_;
    QJsonArray answers_; // the answers of the step being recorded
    QString lastCoalesce_;
    std::optional<QJsonObject> pending_; // the user step between its begin and end
    QString pendingCoalesce_;
    // Steps of the window that the user step's action caused (the frame its change shows): they
    // follow it.
    std::vector<std::pair<QJsonObject, QString>> following_;
    int depth_ = 0;
    QString input_;
    bool saveInput_ = false;
    HostSnapshot start_;
    bool saveAlpha_ = false;
    std::uint32_t primary_ = 0, secondary_ = 0;
    Responder* innerResponder_ = nullptr;
    std::unique_ptr<Responder> tap_;
};

} // namespace kirrel::host
