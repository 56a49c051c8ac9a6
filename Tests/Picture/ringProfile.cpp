// How the light of a frame falls off. Reads bare frames (RGB, 24 bits a pixel) of the given size from
// standard input and prints a line for each: the mean of the largest channel in rings around everything that
// is at least half as bright as the brightest, in % of that; then the mean luminance and the share of full
// white, both in %.
//
//     ring_profile WIDTH HEIGHT < FRAMES

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <vector>

namespace {
constexpr double USUAL_HEIGHT = 480;
/// Edges of the rings, in pixels of a picture of the usual height; each ring holds its outer edge.
constexpr std::array<double, 4> EDGES = {2, 6, 12, 24};

struct Size {
    int width;
    int height;
};

/// To the nearest pixel that is at least half as bright as the brightest, in pixels, squared; those beyond
/// reach count as infinitely far.
std::vector<int> squaredDistances(const std::vector<int>& levels, const Size& size, int reach) {
    const int brightest = *std::max_element(levels.begin(), levels.end());
    std::vector<int> result(levels.size(), std::numeric_limits<int>::max());
    for (int i = 0; i < size.width * size.height; ++i) {
        if (2 * levels[i] < brightest) {
            continue;
        }
        const int x = i % size.width;
        const int y = i / size.width;
        for (int down = std::max(-y, -reach); down <= std::min(size.height - 1 - y, reach); ++down) {
            for (int across = std::max(-x, -reach); across <= std::min(size.width - 1 - x, reach); ++across) {
                int& best = result[i + down * size.width + across];
                best = std::min(best, down * down + across * across);
            }
        }
    }
    return result;
}

void printProfile(const std::vector<unsigned char>& frame, const Size& size) {
    std::vector<int> largest;
    double luminance = 0;
    std::size_t white = 0;
    for (std::size_t i = 0; i < frame.size(); i += 3) {
        const auto [darkest, brightest] = std::minmax({frame[i], frame[i + 1], frame[i + 2]});
        largest.push_back(brightest);
        luminance += 0.2126 * frame[i] + 0.7152 * frame[i + 1] + 0.0722 * frame[i + 2];
        white += darkest == 255 ? 1 : 0;
    }
    const int brightest = *std::max_element(largest.begin(), largest.end());
    const double scale = size.height / USUAL_HEIGHT;
    const std::vector<int> distances =
        squaredDistances(largest, size, static_cast<int>(std::ceil(EDGES.back() * scale)));
    for (std::size_t ring = 0; ring + 1 < EDGES.size(); ++ring) {
        double sum = 0;
        std::size_t count = 0;
        for (std::size_t i = 0; i < distances.size(); ++i) {
            const double distance = std::sqrt(distances[i]) / scale;
            if (distance > EDGES[ring] && distance <= EDGES[ring + 1]) {
                sum += largest[i];
                ++count;
            }
        }
        std::printf("%6.2f ", count != 0 && brightest != 0 ? 100 * sum / count / brightest : 0.0);
    }
    const auto pixels = static_cast<double>(largest.size());
    std::printf("%6.2f %6.2f\n", 100 * luminance / 255 / pixels, 100 * static_cast<double>(white) / pixels);
}
} // namespace

int main(int argc, char** argv) {
    const Size size = argc == 3 ? Size{std::atoi(argv[1]), std::atoi(argv[2])} : Size{0, 0};
    if (size.width <= 0 || size.height <= 0) {
        std::fputs("usage: ring_profile WIDTH HEIGHT < FRAMES\n", stderr);
        return 2;
    }
    std::vector<unsigned char> frame(3 * static_cast<std::size_t>(size.width) * size.height);
    while (std::fread(frame.data(), 1, frame.size(), stdin) == frame.size()) {
        printProfile(frame, size);
    }
    return 0;
}
