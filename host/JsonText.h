#pragma once
// Small helpers to write JSON text by hand where a document model would be overkill.

#include <string>

namespace kirrel::host {

std::string jsonQuote(const std::string& s);
// Shortest text that reads back as the same double; whole numbers without a fraction.
std::string jsonNumber(double v);

} // namespace kirrel::host
