#include "ContactSheet.h"

#include "Timeline.h"
#include "VideoFormat.h"
#include "describe.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

namespace recorder {

namespace {

constexpr std::uintmax_t MOST_BYTES = 400000;

// How far into its scene each picture of a row is: away from the ends and the middle, where scenes are dark.
constexpr std::array<unsigned int, 3> PERCENT = {30, 60, 85};

/// Ways to write the sheet, the best looking first, each smaller than the one before.
std::vector<Arguments> waysToWrite(bool asPng) {
    std::vector<Arguments> ways;
    if (asPng) {
        ways.push_back({"-c:v", "png"});
        for (const char* const scale : {"1", "3/4", "1/2", "1/4"}) {
            ways.push_back({"-vf",
                            std::string("scale=iw*") + scale +
                                ":-1:flags=area,split[a][b];[a]palettegen[p];[b][p]paletteuse",
                            "-c:v", "png"});
        }
    } else {
        for (const char* const quality : {"2", "4", "7", "12", "20", "31"}) {
            ways.push_back({"-c:v", "mjpeg", "-pix_fmt", "yuvj444p", "-q:v", quality});
        }
    }
    return ways;
}

} // namespace

ContactSheet::ContactSheet(const std::string& file, const std::string& folder)
    : draft(file), workingCopy(folder + "/sheet.png") {
    for (std::size_t i = 0; i < COUNT; ++i) {
        const std::size_t scene = i / PER_SCENE;
        const unsigned int start = timeline::shotStart(scene);
        frames[i] = start + (timeline::shotStart(scene + 1) - start) * PERCENT[i % PER_SCENE] / 100;
    }
}

void ContactSheet::open(const FrameSize& size) {
    const std::string grid = std::to_string(PER_SCENE) + "x" + std::to_string(COUNT / PER_SCENE);
    encoder = std::make_unique<Encoder>(
        joined(
            {frameInput(size),
             {"-vf",
              "vflip,scale='min(320,iw)':-1:flags=area,tile=" + grid + ":margin=4:padding=4:color=0x202020",
              "-frames:v", "1", "-pix_fmt", "rgb24", "-c:v", "png", "-f", "image2pipe"}}),
        workingCopy, getName());
}

bool ContactSheet::wants(unsigned int frame) const {
    return std::binary_search(frames.begin(), frames.end(), frame);
}

void ContactSheet::take(const Frame& frame) {
    encoder->write(frame.pixels);
    ++taken;
}

std::string ContactSheet::finish() {
    if (taken < COUNT) {
        return "";
    }
    encoder->finish();
    const std::string& target = draft.getTarget();
    const bool asPng = target.compare(target.size() - 4, 4, ".png") == 0;
    for (const Arguments& way : waysToWrite(asPng)) {
        Encoder(joined({{"-i", "file:" + workingCopy}, way, {"-f", "image2pipe"}}), draft.getDraft(),
                getName())
            .finish();
        if (std::filesystem::file_size(draft.getDraft()) < MOST_BYTES) {
            std::string summary = std::to_string(taken) + " pictures in " + describeFile(draft);
            draft.publish();
            return summary;
        }
    }
    throw std::runtime_error(getName() + " would be larger than 400 KB");
}

} // namespace recorder
