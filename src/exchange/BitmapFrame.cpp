// Putting a frame bitmap into the host; the file is read and turned into planes apart from the host
// (BitmapReader.cpp), so that the reading can be checked on its own.

#include "exchange/BitmapReader.h"

namespace kirrel::exchange {

void LoadBitmapFrame(Vantry::Vantry_Class& van, const std::string& path, int frame, std::uint32_t paper) {
    if (path.empty()) return;
    putBitmapFrame(van, ReadBitmapFile(path), path, frame, paper);
}

void putBitmapFrame(Vantry::Vantry_Class& van, const BitmapFile& f, const std::string& path, int frame,
                    std::uint32_t paper) {
    if (f.result == -1) return;
    if (frame == 0) van.Van_NewBuffer(f.width, f.height);
    van.Van_RenameBuffer(path);
    van.Van_NewFilename(path);
    krl::Plane r, g, b;
    bitmapPlanes(f, r, g, b, paper);
    if (frame < 1) {
        van.Van_SetRbuffer(r);
        van.Van_SetGbuffer(g);
        van.Van_SetBbuffer(b);
    } else {
        van.Van_SetRFrame(r, frame);
        van.Van_SetGFrame(g, frame);
        van.Van_SetBFrame(b, frame);
    }
}

} // namespace kirrel::exchange
