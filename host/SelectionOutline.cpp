#include "host/SelectionOutline.h"

namespace kirrel::host {

std::vector<QLine> selectionOutline(const krl::Plane& alpha) {
    std::vector<QLine> lines;
    const int w = alpha.width(); // pixels 0..W-1 are the picture proper
    const int h = alpha.height();
    if (w <= 0 || h <= 0) return lines;
    auto selected = [&](int x, int y) {
        return x >= 0 && y >= 0 && x < w && y < h && alpha.at(x, y) >= kSelectedAlpha;
    };
    auto full = [&] { return lines.size() >= kMaxOutlineLines; };

    // Horizontal edges: on the boundary line y, between row y-1 and row y.
    for (int y = 0; y <= h && !full(); ++y) {
        int start = -1;
        for (int x = 0; x <= w; ++x) {
            const bool edge = x < w && selected(x, y - 1) != selected(x, y);
            if (edge && start < 0) start = x;
            if (!edge && start >= 0) {
                lines.emplace_back(start, y, x, y);
                start = -1;
            }
        }
    }
    // Vertical edges: on the boundary line x, between column x-1 and column x.
    for (int x = 0; x <= w && !full(); ++x) {
        int start = -1;
        for (int y = 0; y <= h; ++y) {
            const bool edge = y < h && selected(x - 1, y) != selected(x, y);
            if (edge && start < 0) start = y;
            if (!edge && start >= 0) {
                lines.emplace_back(x, start, x, y);
                start = -1;
            }
        }
    }
    if (lines.size() > kMaxOutlineLines) lines.resize(kMaxOutlineLines);
    return lines;
}

} // namespace kirrel::host
