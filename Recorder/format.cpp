#include "format.h"

namespace recorder::format {

Arguments frames(const FrameSize& size) {
    return {"-f",        "rawvideo",   "-pixel_format", "bgr0", "-video_size",
            size.text(), "-framerate", "200/3",         "-i",   "pipe:0"};
}

Arguments picture(bool fast) {
    Arguments arguments = {
        "-vf",
        "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p,"
        "setparams=range=tv:color_primaries=bt709:color_trc=bt709:colorspace=bt709",
        "-c:v", "libx264"};
    // Of the presets that leave the processor to the drawing, this one finds the motion of thin lines: it
    // makes less than half of what the fastest does, which costs half as much. A longer look ahead and a
    // second frame to refer to cost little. Quality means likeness (psy), and no scene gets more of it than
    // another (qcomp). It is the best with which the whole show at its usual size stays below 45 MB.
    const Arguments effort =
        fast ? Arguments{"-preset", "ultrafast", "-crf", "22"}
             : Arguments{"-preset", "veryfast",      "-crf", "19",    "-qcomp", "0.46",        "-psy",
                         "0",       "-rc-lookahead", "40",   "-refs", "2",      "-mixed-refs", "1"};
    arguments.insert(arguments.end(), effort.begin(), effort.end());
    return arguments;
}

Arguments mp4(const Options& options) {
    const std::string comment = "comment=version " QUELAR_VERSION ", seed " + std::to_string(*options.seed) +
                                ", " + options.size->text() + (options.smooth ? ", smooth" : "");
    return {"-map_metadata", "-1",    "-metadata", "title=Quelar", "-metadata", "artist=Olmbrex",
            "-metadata",     comment, "-movflags", "+faststart",   "-f",        "mp4"};
}

} // namespace recorder::format
