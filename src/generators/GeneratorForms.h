#pragma once

namespace kirrel::generators {

// The generators, Focus and the frame tools.
void registerGeneratorForms();

} // namespace kirrel::generators
