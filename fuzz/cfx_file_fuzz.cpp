// Custom-effect files (.cfx) as the player and the effect runs open them: Type and Title, the rest
// of the header for a Type 1 file, the title as the dialog shows it, then every frame. A refusal is
// an exception; anything else is a fault.

#include "FuzzFile.h"
#include "customfx/CfxFile.h"

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kirrel::customfx;
    const std::string& path = kirrel::fuzz::writeInput(data, size, ".cfx");
    try {
        CfxReader reader(path);
        (void)trimTitle(reader.header().title);
        if (reader.header().type != 1) return 0;
        reader.readRest();
        krl::Triple frame;
        for (int i = 0; i < reader.header().frames; ++i)
            reader.readFrame(frame);
    } catch (const std::exception&) {
    }
    return 0;
}
