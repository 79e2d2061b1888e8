#include "filters/GreyOutPipeline.h"

#include "panel/Numeric.h"
#include "pixel/Filters.h"

namespace kirrel::filters {

std::int16_t greyOutLevel(int slider) {
    return toInt16((slider / 255.0) * 100.0);
}

void greyOutPipeline(krl::Triple& P, const GreyOutSettings& s, int w, int h) {
    for (int n = 1; n <= 3; ++n)
        if (s.channel == n) krl::GreyOut(P.r, P.g, P.b, greyOutLevel(s.slider), n, s.tolerance, w, h);
}

} // namespace kirrel::filters
