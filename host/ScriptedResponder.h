#pragma once
// Answers the host's boxes from a session script's queue. Message and error boxes need no answer;
// a box that needs one and finds none (or finds an answer of another kind) stops the action.

#include "host/Responder.h"

#include <deque>
#include <string>
#include <variant>

namespace kirrel::host {

struct QueuedAnswer {
    enum class Kind { Question, Value, File, Input } kind;
    double number = 0;
    std::string text;
};

class ScriptedResponder final : public Responder {
  public:
    void push(QueuedAnswer a) { queue_.push_back(std::move(a)); }
    const std::deque<QueuedAnswer>& pending() const { return queue_; }
    void clear() { queue_.clear(); }

    void message(const std::string&, const std::string&) override {}
    int question(const std::string& text, const std::string& title) override;
    double value(const std::string& title, double minimum, double maximum) override;
    std::string fileOpen(const std::string& title, const std::string& def, const std::string& filter) override;
    std::string fileSave(const std::string& title, const std::string& def, const std::string& filter) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& def) override;
    void error(const std::string&, const std::string&) override {}

    static std::string kindName(QueuedAnswer::Kind k);

  private:
    QueuedAnswer take(QueuedAnswer::Kind wanted, const std::string& boxText);
    std::deque<QueuedAnswer> queue_;
};

} // namespace kirrel::host
