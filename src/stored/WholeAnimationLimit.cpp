#include "stored/WholeAnimationLimit.h"

#include <limits>

namespace kirrel::stored {

long long wholeAnimationBytes(long long frames, long long planes, long long w, long long h) {
    if (frames < 0 || planes < 0 || w < 0 || h < 0) return -1;
    long long total = 1;
    for (const long long factor : {frames, planes, w + 1, h + 1}) {
        if (factor != 0 && total > std::numeric_limits<long long>::max() / factor) return -1;
        total *= factor;
    }
    return total;
}

std::string tooLargeMessage(long long bytes) {
    constexpr long long mb = 1LL << 20;
    const std::string size = bytes < 0 ? std::string("more than any computer can hold")
                                       : std::to_string((bytes + mb - 1) / mb) + " MB";
    return "This animation is too large to work on in memory.\n\nIt would need " + size +
           ", and the limit is " + std::to_string(kWholeAnimationLimit / mb) +
           " MB.\nNothing has been changed.";
}

} // namespace kirrel::stored
