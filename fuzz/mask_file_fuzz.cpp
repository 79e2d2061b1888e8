// Animated-mask files (.msk) as the mask dialogs and runs open them: the header peek and its
// description, then every frame through the reader, re-using one plane as the runs do. A refusal
// is an exception; anything else is a fault.

#include "FuzzFile.h"
#include "masks/MaskFile.h"

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kirrel::masks;
    const std::string& path = kirrel::fuzz::writeInput(data, size, ".msk");
    try {
        (void)maskDescription(peekMaskHeader(path));
    } catch (const std::exception&) {
    }
    try {
        MaskFileReader reader(path);
        krl::Plane plane;
        while (reader.framesLeft() > 0)
            reader.readPlane(plane);
        // Past the last frame the reader refuses rather than reading on.
        reader.readPlane(plane);
    } catch (const std::exception&) {
    }
    return 0;
}
