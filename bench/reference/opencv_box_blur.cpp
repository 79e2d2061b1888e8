// Times the toolkit box blur that our BoxBlur is compared with: a 5x5 box with repeated edges on three
// separate byte planes of the given size, single-threaded, best of the given number of rounds.
// Prints one line: "opencv_box_blur <cols>x<rows> <milliseconds per three-plane pass>".
// Built only for the comparison script; Kirrel itself never links the toolkit.

#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const int cols = argc > 1 ? std::atoi(argv[1]) : 1921;
    const int rows = argc > 2 ? std::atoi(argv[2]) : 1081;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 30;
    cv::setNumThreads(1);
    cv::Mat planes[3], out[3];
    cv::RNG rng(7);
    for (auto& p : planes) {
        p.create(rows, cols, CV_8UC1);
        rng.fill(p, cv::RNG::UNIFORM, 0, 256);
    }
    double best = 1e30;
    for (int i = 0; i < rounds; ++i) {
        const auto t0 = std::chrono::steady_clock::now();
        for (int c = 0; c < 3; ++c)
            cv::blur(planes[c], out[c], cv::Size(5, 5), cv::Point(-1, -1), cv::BORDER_REPLICATE);
        const auto t1 = std::chrono::steady_clock::now();
        best = std::min(best, std::chrono::duration<double, std::milli>(t1 - t0).count());
    }
    std::printf("opencv_box_blur %dx%d %.3f\n", cols, rows, best);
    return 0;
}
