#include "VideoFile.h"

#include "Timeline.h"
#include "describe.h"

#include <algorithm>
#include <utility>

namespace recorder {

VideoFile::VideoFile(const std::string& file, VideoFormat format) : draft(file), format(std::move(format)) {}

void VideoFile::open(const FrameSize& size) {
    frameSize = size;
    // Should the picture end early, the sound ends with it.
    encoder = std::make_unique<Encoder>(
        joined({frameInput(size), format.sound(), {"-shortest"}, format.picture(), format.file()}),
        draft.getDraft(), getName());
}

void VideoFile::take(const Frame& frame) {
    encoder->write(frame.pixels);
    ++frames;
}

std::string VideoFile::finish() {
    if (frames < std::min(format.range.count(), timeline::firstFrameFrom(LEAST_MS))) {
        return "";
    }
    encoder->finish();
    std::string summary = describeFrames(frames, frameSize) + " in " + describeFile(draft);
    draft.publish();
    return summary;
}

} // namespace recorder
