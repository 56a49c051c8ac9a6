#include "VideoFile.h"

#include "describe.h"

#include <filesystem>
#include <utility>

namespace recorder {

namespace {

std::string seconds(unsigned int frames) {
    return std::to_string(frames * FRAME_MS) + "ms";
}

} // namespace

VideoFile::VideoFile(const std::string& file, const FrameRange& range, std::string track)
    : draft(file), range(range), track(std::move(track)) {}

void VideoFile::open(const FrameSize& size) {
    frameSize = size;
    std::vector<std::string> arguments = frameInput(size);
    const auto add = [&](std::initializer_list<std::string> more) {
        arguments.insert(arguments.end(), more);
    };
    if (!track.empty()) {
        // The track is decoded from its start: a jump into it would land a little off. Silence follows it,
        // and the picture's end ends both.
        add({"-i", "file:" + track, "-map", "0:v", "-map", "1:a", "-af",
             "atrim=start=" + seconds(range.first) + ",asetpts=PTS-STARTPTS,apad", "-c:a", "aac", "-b:a",
             "192k", "-shortest"});
    }
    // Thin bright lines on black: veryfast keeps them clean at this quality and leaves the processor to the
    // drawing.
    add({"-vf",
         "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p",
         "-c:v",
         "libx264",
         "-preset",
         "veryfast",
         "-crf",
         "18",
         "-colorspace",
         "bt709",
         "-color_primaries",
         "bt709",
         "-color_trc",
         "bt709",
         "-color_range",
         "tv",
         "-movflags",
         "+faststart",
         "-f",
         "mp4",
         "file:" + draft.getDraft()});
    encoder = std::make_unique<Encoder>(arguments);
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
