// Slot and undo files as the stored runs and QuickRestore read them: the header peek, then every
// picture in sequence, for both kinds of file. A refusal is an exception; anything else is a fault.

#include "FuzzFile.h"
#include "stored/SlotFiles.h"

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kirrel::stored::FrameFileReader;
    const std::string& path = kirrel::fuzz::writeInput(data, size, ".dat");
    (void)kirrel::stored::peekFrameFileHeader(path);
    for (auto kind : {FrameFileReader::Kind::Slot, FrameFileReader::Kind::Undo}) {
        try {
            FrameFileReader reader(path, kind);
            krl::Triple picture;
            while (reader.picturesLeft() > 0)
                reader.readPicture(picture);
        } catch (const std::exception&) {
        }
    }
    return 0;
}
