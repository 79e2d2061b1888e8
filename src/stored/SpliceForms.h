#pragma once

namespace kirrel::stored {

// Combine, Composite and Attach with stored animations.
void registerSpliceForms();

} // namespace kirrel::stored
