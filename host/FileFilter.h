#pragma once
// File requester filters. The panel writes them as "description|pattern" pairs joined by '|', as in
// "gif(*.gif)|*.gif"; Qt's file dialogs want "description (patterns)" entries joined by ";;".

#include <string>

namespace kirrel::host {

// "gif(*.gif)|*.gif" -> "gif (*.gif)"; "Pictures|*.png;*.bmp|Any|*.*" -> "Pictures (*.png *.bmp);;Any (*.*)".
// An empty filter means any file.
std::string qtFileFilter(const std::string& hostFilter);
// The extension that the first pattern asks for ("gif" for "*.gif"); empty when it names none.
std::string filterSuffix(const std::string& hostFilter);

} // namespace kirrel::host
