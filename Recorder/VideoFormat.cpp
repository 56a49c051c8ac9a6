#include "VideoFormat.h"

#include "Timeline.h"
#include "checkTrack.h"
#include "report.h"

namespace recorder {

Arguments joined(std::initializer_list<Arguments> parts) {
    Arguments all;
    for (const Arguments& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Arguments frameInput(const FrameSize& size) {
    return {"-f",        "rawvideo",   "-pixel_format", "bgr0", "-video_size",
            size.text(), "-framerate", "200/3",         "-i",   "pipe:0"};
}

VideoFormat VideoFormat::of(const Options& options, const ShowSettings& settings, const std::string& track) {
    std::string sound = options.silent ? "" : track;
    if (const std::string fault = sound.empty() ? "" : faultOfTrack(sound); !fault.empty()) {
        say(fault + " The video is silent.");
        sound.clear();
    }
    return {options.range(), sound,
            std::string("version ") + QUELAR_VERSION + ", seed " + settings.seed + ", " +
                settings.size.text() + (options.smooth ? ", smooth" : ""),
            options.fast};
}

Arguments VideoFormat::picture() const {
    // Of the presets that leave the processor to the drawing, this one finds the motion of thin lines: it
    // makes less than half of what the fastest does, which costs half as much. A longer look ahead and a
    // second frame to refer to cost little. Quality means likeness (psy), and no scene gets more of it than
    // another (qcomp). It is the best with which the whole show at its usual size stays below 45 MB.
    Arguments arguments = {
        "-vf",
        "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p",
        "-c:v",
        "libx264",
        "-colorspace",
        "bt709",
        "-color_primaries",
        "bt709",
        "-color_trc",
        "bt709",
        "-color_range",
        "tv"};
    if (fast) {
        arguments.insert(arguments.end(), {"-preset", "ultrafast", "-crf", "22"});
    } else {
        arguments.insert(arguments.end(), {"-preset", "veryfast", "-crf", "19", "-qcomp", "0.46", "-psy", "0",
                                           "-rc-lookahead", "40", "-refs", "2", "-mixed-refs", "1"});
    }
    return arguments;
}

Arguments VideoFormat::sound() const {
    if (track.empty()) {
        return {};
    }
    // The track is decoded from its start: a jump into it would land a little off.
    const auto milliseconds = [](unsigned int frame) {
        return std::to_string(frame * timeline::FRAME_MS) + "ms";
    };
    return {"-i",
            "file:" + track,
            "-map",
            "0:v",
            "-map",
            "1:a",
            "-c:a",
            "aac",
            "-b:a",
            "192k",
            "-af",
            "apad,atrim=start=" + milliseconds(range.first) + ":end=" + milliseconds(range.last + 1) +
                ",asetpts=PTS-STARTPTS"};
}

Arguments VideoFormat::file() const {
    return {"-map_metadata",
            "-1",
            "-metadata",
            "title=Quelar",
            "-metadata",
            "artist=Olmbrex",
            "-metadata",
            "comment=" + comment,
            "-movflags",
            "+faststart",
            "-f",
            "mp4"};
}

} // namespace recorder
