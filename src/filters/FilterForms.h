#pragma once
// Makes the image filter dialogs known to the panel by their form names.

namespace kirrel::filters {

void registerFilterForms();

} // namespace kirrel::filters
