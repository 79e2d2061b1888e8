#include "host/FileFilter.h"

#include <vector>

namespace kirrel::host {

namespace {

std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> out;
    std::string::size_type start = 0;
    for (;;) {
        const auto end = s.find(sep, start);
        out.push_back(s.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) return out;
        start = end + 1;
    }
}

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

// "*.png;*.bmp" -> "*.png *.bmp"; blanks between patterns are kept apart by one space.
std::string patternList(const std::string& patterns) {
    std::string out;
    for (const std::string& p : split(patterns, ';')) {
        const std::string t = trimmed(p);
        if (t.empty()) continue;
        if (!out.empty()) out += ' ';
        out += t;
    }
    return out;
}

// The description without the "(…)" that the panel writes into it, since Qt adds its own.
std::string bareDescription(const std::string& d) {
    std::string t = trimmed(d);
    const auto open = t.rfind('(');
    if (open != std::string::npos && !t.empty() && t.back() == ')') t = trimmed(t.substr(0, open));
    return t;
}

// The patterns written inside the description's parentheses, for an entry that has no pattern part.
std::string patternsInDescription(const std::string& d) {
    const auto open = d.rfind('(');
    const auto close = d.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) return {};
    return patternList(d.substr(open + 1, close - open - 1));
}

std::string entry(const std::string& description, const std::string& patterns) {
    const std::string d = bareDescription(description);
    return (d.empty() ? patterns : d) + " (" + patterns + ")";
}

} // namespace

std::string qtFileFilter(const std::string& hostFilter) {
    if (trimmed(hostFilter).empty()) return "All files (*)";
    const std::vector<std::string> parts = split(hostFilter, '|');
    std::string out;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        std::string patterns = i + 1 < parts.size() ? patternList(parts[i + 1]) : std::string();
        if (patterns.empty()) patterns = patternsInDescription(parts[i]);
        if (patterns.empty() && parts[i].find('*') != std::string::npos) patterns = patternList(parts[i]);
        if (patterns.empty()) patterns.assign(1, '*'); // assign: GCC 12 misreads = "*" as an overlapping copy
        if (!out.empty()) out += ";;";
        out += entry(parts[i], patterns);
    }
    return out;
}

std::string filterSuffix(const std::string& hostFilter) {
    const std::string qt = qtFileFilter(hostFilter);
    const auto dot = qt.find("*.");
    if (dot == std::string::npos) return {};
    std::string ext;
    for (auto i = dot + 2; i < qt.size(); ++i) {
        const char c = qt[i];
        if (c == ' ' || c == ')' || c == ';' || c == '*' || c == '?') break;
        ext += c;
    }
    return ext;
}

} // namespace kirrel::host
