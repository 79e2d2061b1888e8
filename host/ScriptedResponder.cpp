#include "host/ScriptedResponder.h"

#include <algorithm>

namespace kirrel::host {

std::string ScriptedResponder::kindName(QueuedAnswer::Kind k) {
    switch (k) {
    case QueuedAnswer::Kind::Question:
        return "question";
    case QueuedAnswer::Kind::Value:
        return "value";
    case QueuedAnswer::Kind::File:
        return "file";
    case QueuedAnswer::Kind::Input:
        return "input";
    }
    return "answer";
}

QueuedAnswer ScriptedResponder::take(QueuedAnswer::Kind wanted, const std::string& boxText) {
    std::string shown = boxText;
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    if (queue_.empty())
        throw ScriptAbort{"no queued answer for the " + kindName(wanted) + " box \"" + shown + "\""};
    if (queue_.front().kind != wanted)
        throw ScriptAbort{"the " + kindName(wanted) + " box \"" + shown + "\" found a queued " +
                          kindName(queue_.front().kind) + " answer"};
    QueuedAnswer a = std::move(queue_.front());
    queue_.pop_front();
    return a;
}

int ScriptedResponder::question(const std::string& text, const std::string&) {
    return static_cast<int>(take(QueuedAnswer::Kind::Question, text).number);
}

double ScriptedResponder::value(const std::string& title, double, double) {
    return take(QueuedAnswer::Kind::Value, title).number;
}

std::string ScriptedResponder::fileOpen(const std::string& title, const std::string&, const std::string&) {
    return take(QueuedAnswer::Kind::File, title).text;
}

std::string ScriptedResponder::fileSave(const std::string& title, const std::string&, const std::string&) {
    return take(QueuedAnswer::Kind::File, title).text;
}

std::optional<std::string> ScriptedResponder::input(const std::string& prompt, const std::string&,
                                                    const std::string&) {
    return take(QueuedAnswer::Kind::Input, prompt).text;
}

} // namespace kirrel::host
