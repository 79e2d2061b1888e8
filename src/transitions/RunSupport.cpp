#include "transitions/RunSupport.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"

namespace kirrel::transitions {

void fetchFrame(Vantry::Vantry_Class& van, krl::Triple& t) {
    t.r = van.Van_GetRBuffer();
    t.g = van.Van_GetGBuffer();
    t.b = van.Van_GetBBuffer();
}

void sendFrame(Vantry::Vantry_Class& van, const krl::Triple& t) {
    van.Van_SetRbuffer(t.r);
    van.Van_SetGbuffer(t.g);
    van.Van_SetBbuffer(t.b);
}

void limitSourceByAlpha(RunFrame& f) {
    krl::Plane al = f.van.Van_GetABuffer();
    krl::Negative(al, al, al, f.W + 1, f.H + 1);
    krl::AlphaMix(f.A.r, f.A.g, f.A.b, f.M.r, f.M.g, f.M.b, al, f.W, f.H);
}

} // namespace kirrel::transitions
