#pragma once
// Dissolves: pixels change over to the source in a random order. A noise plane made once per run
// decides each pixel's turn, so a pixel that has changed stays changed.

#include <string>

namespace kirrel::transitions {

void DissolveTo(int start, int end, const std::string& source);
void DissolveFrom(int start, int end, const std::string& source);
// The splices with stored animation `slot` (0..3).
void Dissolve2Stored(int start, int slot);
void DissolveFromStored(int end, int slot);

} // namespace kirrel::transitions
