#pragma once
// Whoever answers the host's modal boxes: a person at the Qt window, or a session script's queue
// of answers. The host records every box in its dialog log whoever answers it.

#include <optional>
#include <string>

namespace kirrel::host {

class Responder {
  public:
    virtual ~Responder() = default;
    virtual void message(const std::string& text, const std::string& title) = 0;
    // 2 means no; anything else yes.
    virtual int question(const std::string& text, const std::string& title) = 0;
    // A question whose yes throws work away: 2 keeps it. A person gets "no" as the safe default.
    virtual int discard(const std::string& text, const std::string& title) { return question(text, title); }
    // A negative result means the user backed out.
    virtual double value(const std::string& title, double minimum, double maximum) = 0;
    // The empty string when cancelled.
    virtual std::string fileOpen(const std::string& title, const std::string& defaultFile,
                                 const std::string& filter) = 0;
    virtual std::string fileSave(const std::string& title, const std::string& defaultFile,
                                 const std::string& filter) = 0;
    // The platform's input box; nullopt when cancelled (the caller then sees an empty text).
    virtual std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                             const std::string& defaultText) = 0;
    // An unexpected failure caught at the event boundary.
    virtual void error(const std::string& text, const std::string& title) = 0;
};

// Thrown by a responder that cannot answer (a session script with no queued answer). It is not a
// std::exception on purpose: the event boundary must not mistake it for an error of the effect.
struct ScriptAbort {
    std::string reason;
};

} // namespace kirrel::host
