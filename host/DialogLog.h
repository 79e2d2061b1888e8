#pragma once
// Every box the host has shown, in order: what session scripts report in state.json.

#include <string>
#include <vector>

namespace kirrel::host {

struct DialogRecord {
    std::string kind; // message, question, value, file_open, file_save, input, error
    std::string text;
    std::string title;
    std::string answer; // as JSON: a number, a quoted string, or null
};

using DialogLog = std::vector<DialogRecord>;

} // namespace kirrel::host
