#pragma once
// Pictures for the run benchmarks: noise in every plane, so that no run takes a shortcut on flat
// areas and no two frames share their bytes.

#include "host/HostState.h"

#include <cstdint>
#include <random>

namespace kirrel::bench {

inline host::Picture noisePicture(int w, int h, unsigned seed) {
    host::Picture p = host::Picture::filled(w, h, 0);
    std::mt19937 rng(seed);
    for (krl::Plane* plane : {&p.r, &p.g, &p.b}) {
        std::uint8_t* d = plane->data();
        for (std::size_t i = 0; i < plane->size(); ++i)
            d[i] = static_cast<std::uint8_t>(rng() >> 24);
    }
    return p;
}

} // namespace kirrel::bench
