#include "customfx/CustomFX.h"

#include "customfx/CfxFile.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "pixel/Triple.h"
#include "stored/DataFile.h"

#include <memory>

namespace kirrel::customfx {

namespace {

constexpr const char* kTooFewFrames = "Must have animation of 2 or more frames";
constexpr const char* kExported = "CFX Export Completed";
constexpr const char* kNotType1 = "Not a Type 1 CFX File: ";

// Opens the file and reads its whole header; a wrong type or a damaged file is told to the user and
// gives nothing, before the host has been touched.
std::unique_ptr<CfxReader> openForFrames(Vantry::Vantry_Class& van, const std::string& path) {
    std::unique_ptr<CfxReader> in;
    try {
        in = std::make_unique<CfxReader>(path);
        if (in->header().type != 1) {
            van.Van_MessageBox(kNotType1 + std::to_string(in->header().type));
            return nullptr;
        }
        in->readRest();
    } catch (const stored::DamagedFile& e) {
        van.Van_MessageBox(e.what());
        return nullptr;
    }
    return in;
}

} // namespace

void ExportCFX(const std::string& title) {
    Vantry::Vantry_Class van;
    CfxHeader h;
    h.type = 1;
    h.title = titleField(title);
    h.height = van.Van_BufferHeight();
    h.width = van.Van_BufferWidth();
    h.frames = van.Van_GetTotalFrames();
    if (h.frames < 2) {
        van.Van_MessageBox(kTooFewFrames);
        return;
    }
    const std::string path = van.Van_RequestFile_save("Save CustomFX File", "", kCfxFilter);
    if (path.empty()) return;
    // The main buffer and its alpha are asked for and dropped: the loop below reads the frames
    // themselves, and the alpha isn't kept in the file.
    van.Van_GetRBuffer();
    van.Van_GetGBuffer();
    van.Van_GetBBuffer();
    van.Van_GetABuffer();
    h.primary = splitColour(van.Van_getPrimaryColor());
    h.secondary = splitColour(van.Van_getSecondaryColor());

    CfxWriter out(path);
    out.writeHeader(h);
    krl::Triple t;
    for (int i = 0; i < h.frames; ++i) {
        t.r = van.Van_GetRFrame(i);
        t.g = van.Van_GetGFrame(i);
        t.b = van.Van_GetBFrame(i);
        for (const krl::Plane* p : {&t.r, &t.g, &t.b}) {
            // A frame of another size would make the file lie about its layout.
            if (p->width() != h.width || p->height() != h.height)
                throw std::runtime_error("Frame " + std::to_string(i) +
                                         " doesn't have the animation's size.");
            out.writePlane(*p);
        }
    }
    out.close();
    van.Van_MessageBox(kExported);
}

void ImportCFX() {
    Vantry::Vantry_Class van;
    van.Van_BufferHeight();
    van.Van_BufferWidth();
    van.Van_GetTotalFrames();
    const std::string path = van.Van_RequestFile_open("Import CustomFX File", "", kCfxFilter);
    if (path.empty()) return;
    splitColour(van.Van_getPrimaryColor());
    splitColour(van.Van_getSecondaryColor());

    std::unique_ptr<CfxReader> in = openForFrames(van, path);
    if (!in) return;
    const CfxHeader h = in->header();
    van.Van_NewBuffer(h.width, h.height);
    van.Van_CreateAnimAdv(h.frames, 2);
    krl::Triple t(h.width, h.height);
    for (int i = 0; i < h.frames; ++i) {
        in->readFrame(t);
        van.Van_GotoFrame(i);
        van.Van_SetRbuffer(t.r);
        van.Van_SetGbuffer(t.g);
        van.Van_SetBbuffer(t.b);
    }
    in.reset();
    van.Van_GotoFrame(0);
    van.Van_Refresh();
    const std::string title = trimTitle(h.title);
    van.Van_SetPrimaryColor(h.primary.r, h.primary.g, h.primary.b);
    van.Van_SetSecondaryColor(h.secondary.r, h.secondary.g, h.secondary.b);
    van.Van_MessageBox("CFX Import Completed\n\n" + title + "\nFrames: " + std::to_string(h.frames) +
                       "\nResolution: " + std::to_string(h.width) + " X " + std::to_string(h.height));
}

void PlayCFX(const std::string& path) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    const std::int16_t total = van.Van_GetTotalFrames();
    splitColour(van.Van_getPrimaryColor());
    splitColour(van.Van_getSecondaryColor());

    std::unique_ptr<CfxReader> in = openForFrames(van, path);
    if (!in) return;
    const CfxHeader h = in->header();
    krl::Triple main(W, H), swap(W, H), work(W, H);
    krl::Triple read(h.width, h.height);
    // One swap picture serves every frame.
    swap.r = van.Van_GetSwapRBuffer();
    swap.g = van.Van_GetSwapGBuffer();
    swap.b = van.Van_GetSwapBBuffer();
    const bool sameSize = W == h.width && H == h.height;
    // Frames are read in order, so the file is read no further than the animation goes.
    for (int i = 0; i < total && i < h.frames; ++i) {
        in->readFrame(read);
        if (sameSize)
            work = read;
        else
            krl::ResizeBuffer(work.r, work.g, work.b, read.r, read.g, read.b, W, H, h.width, h.height);
        van.Van_GotoFrame(i);
        main.r = van.Van_GetRBuffer();
        main.g = van.Van_GetGBuffer();
        main.b = van.Van_GetBBuffer();
        krl::CFXFilter1(main.r, main.g, main.b, swap.r, swap.g, swap.b, work.r, work.g, work.b, h.primary.r,
                        h.primary.g, h.primary.b, h.secondary.r, h.secondary.g, h.secondary.b, W, H);
        van.Van_SetRbuffer(work.r);
        van.Van_SetGbuffer(work.g);
        van.Van_SetBbuffer(work.b);
    }
    in.reset();
    van.Van_GotoFrame(0);
    van.Van_Refresh();
}

} // namespace kirrel::customfx
