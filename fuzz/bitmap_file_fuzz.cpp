// Frame bitmaps as the GIF import reads them: the file through ReadBitmapFile, then the planes that
// LoadBitmapFrame would put into the host. A refusal is an exception; anything else is a fault.

#include "FuzzFile.h"
#include "exchange/BitmapReader.h"

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kirrel::exchange;
    const std::string& path = kirrel::fuzz::writeInput(data, size, ".bmp");
    try {
        const BitmapFile f = ReadBitmapFile(path);
        if (f.result == -1) return 0;
        // A compressed file (-3, or -2 when its bit count is also low) is not decoded, and nothing
        // bounds its picture size but the host's own limit, which lies beyond this process's memory
        // limit. Every uncompressed file must have proved its size with its own bytes.
        if (f.compression != 0 && static_cast<long long>(f.width) * f.height > (1LL << 16)) return 0;
        krl::Plane r, g, b;
        bitmapPlanes(f, r, g, b);
    } catch (const std::exception&) {
    }
    return 0;
}
