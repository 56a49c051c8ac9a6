#include "Film.h"

#include "Timeline.h"
#include "describe.h"
#include "format.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <numeric>
#include <stdexcept>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

namespace {

// How far into its scene each picture of a contact sheet is: away from the ends and the middle, where scenes
// are dark.
constexpr std::array<unsigned int, 3> PERCENT = {30, 60, 85};

std::vector<unsigned int> all(const FrameRange& range) {
    std::vector<unsigned int> frames(range.count());
    std::iota(frames.begin(), frames.end(), range.first);
    return frames;
}

} // namespace

Film Film::video(const Options& options, const Track& track, const FrameRange& range) {
    Film film(options, std::make_unique<Draft>(options.video), options.video);
    film.frames = all(range);
    film.least = std::min(range.count(), timeline::firstFrameFrom(LEAST_MS));
    const Arguments file = format::mp4(options);
    film.arguments = joined({track.soundOf(range), {"-shortest"}, format::picture(options.fast), file});
    film.shortened = [&track, first = range.first, file](unsigned int taken) {
        return joined({track.soundOf({first, first + taken - 1}), {"-c:v", "copy"}, file});
    };
    return film;
}

Film Film::still(const Options& options, const StillRequest& request) {
    Film film(options, std::make_unique<Draft>(request.file), request.file);
    film.frames = {timeline::frameAt(request.time)};
    film.arguments = {"-vf", "vflip", "-pix_fmt", "rgb24", "-c:v", "png", "-f", "image2pipe"};
    film.what = "frame " + std::to_string(film.frames[0]) + " of " + film.size.text();
    return film;
}

Film Film::contactSheet(const Options& options) {
    Film film(options, std::make_unique<Draft>(options.contactSheet), options.contactSheet);
    for (std::size_t scene = 0; scene < timeline::SCENES.size(); ++scene) {
        const unsigned int start = timeline::shotStart(scene);
        for (const unsigned int percent : PERCENT) {
            film.frames.push_back(start + (timeline::shotStart(scene + 1) - start) * percent / 100);
        }
    }
    film.least = film.frames.size();
    const std::string sheet =
        "vflip,scale='min(320,iw)':-1:flags=area,tile=" + std::to_string(PERCENT.size()) + "x" +
        std::to_string(timeline::SCENES.size()) + ":margin=4:padding=4:color=0x202020";
    const std::string colours = ",split[a][b];[a]palettegen=max_colors=64[p];[b][p]paletteuse";
    const char last = film.name[film.name.size() - 2]; // of the ending's letters, the one that differs
    film.arguments = last == 'n' || last == 'N'
                         ? Arguments{"-vf", sheet + colours, "-c:v", "png"}
                         : Arguments{"-vf", sheet, "-c:v", "mjpeg", "-pix_fmt", "yuvj444p", "-q:v", "5"};
    film.arguments = joined({film.arguments, {"-frames:v", "1", "-f", "image2pipe"}});
    film.what = std::to_string(film.frames.size()) + " pictures";
    return film;
}

Film Film::stream(const Options& options, const FrameRange& range) {
    Film film(options, nullptr, "standard output");
    film.frames = all(range);
    film.descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (film.descriptor < 0) {
        throw std::runtime_error("can't write to standard output: " + std::generic_category().message(errno));
    }
    if (isatty(film.descriptor) != 0) {
        throw std::runtime_error("frames are not for a terminal: send standard output elsewhere");
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
    // A piece is a video that can be read before it is complete.
    film.arguments = options.piece.empty()
                         ? Arguments{"-vf", "vflip", "-pix_fmt", "rgb24", "-f", "rawvideo"}
                         : joined({format::picture(options.fast),
                                   {"-movflags", "+frag_keyframe+empty_moov+delay_moov", "-f", "mp4"}});
    return film;
}

unsigned int Film::nextFrom(unsigned int frame) const {
    const auto next = std::lower_bound(frames.begin(), frames.end(), frame);
    return next == frames.end() ? NONE : *next;
}

void Film::take(const std::vector<unsigned char>& pixels) {
    if (encoder == nullptr) {
        encoder = std::make_unique<Encoder>(joined({format::frames(size), arguments}), output());
    }
    encoder->write(pixels);
    ++taken;
    if (isComplete()) {
        complete();
    }
}

const std::string& Film::end() {
    if (!isComplete() && taken >= least) {
        complete();
    }
    return summary;
}

void Film::complete() {
    encoder->finish();
    encoder.reset();
    summary = what.empty() ? describeFrames(taken, size) : what;
    if (draft == nullptr) {
        summary += " on " + name;
        return;
    }
    if (!isComplete()) {
        // The sound has followed the picture by and large; now it ends with it.
        const auto longer = std::exchange(draft, std::make_unique<Draft>(name, draft->getTarget()));
        Encoder(joined({{"-i", longer->getPath()}, shortened(taken)}), output()).finish();
    }
    summary += " in " + name + " (" + describeBytes(draft->getBytes()) + ")";
    draft->publish();
}

Encoder::Output Film::output() const { return {draft == nullptr ? "" : draft->getPath(), name, descriptor}; }

} // namespace recorder
