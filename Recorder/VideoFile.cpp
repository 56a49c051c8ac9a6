#include "VideoFile.h"

#include "Timeline.h"
#include "describe.h"

#include <filesystem>
#include <utility>

namespace recorder {

VideoFile::VideoFile(const std::string& file, const FrameRange& range, std::string track)
    : draft(file), range(range), track(std::move(track)) {}

void VideoFile::open(const FrameSize& size) {
    frameSize = size;
    std::vector<std::string> arguments = frameInput(size);
    const auto add = [&](std::initializer_list<std::string> more) {
        arguments.insert(arguments.end(), more);
    };
    if (!track.empty()) {
        // The track is decoded from its start: a jump into it would land a little off. Silence follows it. It
        // is cut where the picture is to end; should that end before, the picture's end ends both.
        const auto milliseconds = [](unsigned int frame) {
            return std::to_string(static_cast<unsigned long long>(frame) * timeline::FRAME_MS) + "ms";
        };
        add({"-i", "file:" + track, "-map", "0:v", "-map", "1:a", "-shortest", "-c:a", "aac", "-b:a",
             "192k"});
        add({"-af", "apad,atrim=start=" + milliseconds(range.first) + ":end=" + milliseconds(range.last + 1) +
                        ",asetpts=PTS-STARTPTS"});
    }
    // Thin bright lines on black: this quality keeps them clean, and the simplest of encoders finds most of
    // their motion. The processor is wanted for the drawing.
    add({"-c:v", "libx264", "-preset", "ultrafast", "-crf", "22"});
    add({"-vf",
         "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p"});
    add({"-colorspace", "bt709", "-color_primaries", "bt709", "-color_trc", "bt709", "-color_range", "tv"});
    add({"-movflags", "+faststart", "-f", "mp4"});
    encoder = std::make_unique<Encoder>(std::move(arguments), draft.getDraft(), getName());
}

void VideoFile::take(const Frame& frame) {
    encoder->write(frame.pixels);
    ++frames;
}

std::string VideoFile::finish() {
    if (frames == 0) {
        return "";
    }
    encoder->finish();
    const auto bytes = std::filesystem::file_size(draft.getDraft());
    draft.publish();
    return describeFrames(frames, frameSize) + " in " + getName() + " (" + describeBytes(bytes) + ")";
}

} // namespace recorder
