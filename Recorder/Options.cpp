#include "Options.h"

#include "Timeline.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace recorder {

namespace {

constexpr unsigned int MOST_JOBS = 256;

constexpr const char* USAGE =
    R"(Usage: record [OPTION]... [FILE]
Records the show as a video, without a screen, a graphics card or a sound card.

  FILE, -o FILE          the MP4 file to write (H.264 picture, AAC sound); quelar.mp4 by default.
                         "-" writes bare frames to standard output instead: RGB, 24 bits a pixel, rows
                         from the top, 200/3 frames a second, no sound
)";

constexpr const char* WAYS =
    R"(  --track SONG           play the show to this MP3 in place of the data folder's
  --from SECONDS         record from this moment of the show on (0 by default)
  --to SECONDS           record up to this moment (the end of the show, 103.2, by default)
  --smooth               draw twice as large each way and average: lines without stairs, in all that is made
  --fast                 encode the video with less effort: done sooner, two and a half times as large
  --silent               leave the sound out of the video
  --still SECONDS FILE   write the frame shown at this moment as a PNG file; may be repeated
  --contact-sheet FILE   write one sheet of three frames from each scene, JPEG or PNG by the file's name,
                         smaller than 400 KB
  --jobs NUMBER          let so many processes make the video piece by piece, 1 to 256, with GNU parallel
  --sshlogin MACHINES    have them on each of these machines, named as for ssh and parted by commas (":" is
                         this one); they need the same show at the same place, and rsync
)";

constexpr const char* MORE =
    R"(
With --still or --contact-sheet there is no video unless its FILE is named too. A file appears under its
name once it is whole, and replaces what was there. A video needs even sides: an odd side grows by one
black row or column; stills and bare frames keep the size asked for. In pictures higher than 480 pixels
lines and points grow with them. A longer song is cut with the show, after a shorter one it runs silent.
Ctrl-C ends the video early but whole, if there is a second of it; a video made in pieces is dropped.

Exit status: 0 done, 1 recording failed, 2 wrong option, 130 stopped by Ctrl-C (143 by a request to
terminate); 252, 253 and 254 are the show's own failures, handed on.

Examples:
  record                                    the whole show, as quelar.mp4
  record --size 1920x1080 --seed 7 big.mp4
  record --track song.mp3 song.mp4          moved by another song
  record --from 53.1 --to 63.17 part.mp4    one scene
  record --still 40 forty.png --contact-sheet sheet.jpg
  record --size 3840x2160 --smooth --jobs 8 --sshlogin :,attic,cellar huge.mp4
  record --size 320x240 - | ffplay -f rawvideo -pixel_format rgb24 -video_size 320x240 -framerate 200/3 -
)";

/// In milliseconds.
unsigned int parseTime(const std::string& option, const std::string& text) {
    double seconds = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (stop != end || error != std::errc() || !(seconds >= 0.0)) {
        throw UsageError(option + ": '" + text + "' is not a number of seconds");
    }
    // Anything past the end is the same to us; the bound keeps the conversion in range.
    return static_cast<unsigned int>(std::lround(std::min(seconds * 1000.0, 2.0 * timeline::SHOW_MS)));
}

unsigned int parseTimeInShow(const std::string& option, const std::string& text) {
    const unsigned int time = parseTime(option, text);
    if (time >= timeline::SHOW_MS) {
        throw UsageError(option + ": the show is over at 103.2 seconds, before " + text);
    }
    return time;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void requireEnding(const std::string& option, const std::string& file,
                   const std::vector<std::string>& endings) {
    if (std::any_of(endings.begin(), endings.end(), [&](const auto& end) { return endsWith(file, end); })) {
        return;
    }
    std::string list;
    for (const std::string& end : endings) {
        list += (list.empty() ? "" : " or ") + end;
    }
    throw UsageError(option + ": the name '" + file + "' should end in " + list);
}

void setVideo(Options& options, const std::string& file) {
    if (!options.video.empty()) {
        throw UsageError("two videos named, '" + options.video + "' and '" + file + "'");
    }
    if (file != "-") {
        requireEnding("video", file, {".mp4", ".m4v"});
    }
    options.video = file;
}

unsigned int parseJobs(const std::string& text) {
    const auto jobs = wholeNumber(text);
    if (!jobs || *jobs == 0 || *jobs > MOST_JOBS) {
        throw UsageError("--jobs: '" + text + "' is not a whole number from 1 to 256");
    }
    return *jobs;
}

/// What can't be had together.
void check(const Options& options) {
    if (options.range().last + 1 <= options.range().first) {
        throw UsageError("--from and --to leave no frame between them");
    }
    if (options.jobs > 0 &&
        (options.video == "-" || !options.stills.empty() || !options.contactSheet.empty())) {
        throw UsageError("--jobs is for a video file and nothing else");
    }
    if (options.jobs == 0 && !options.machines.empty()) {
        throw UsageError("--sshlogin needs --jobs beside it");
    }
}

} // namespace

Options Options::parse(const std::vector<std::string>& arguments) {
    Options options;
    ArgumentReader reader(arguments);
    while (reader.advance()) {
        const std::string& argument = reader.get();
        if (!reader.isOption()) {
            setVideo(options, argument);
        } else if (argument == "-o") {
            setVideo(options, reader.value("a file name"));
        } else if (argument == "--from") {
            options.from = parseTimeInShow(argument, reader.value("a number of seconds"));
        } else if (argument == "--to") {
            options.to = parseTime(argument, reader.value("a number of seconds"));
        } else if (argument == "--still") {
            const unsigned int time =
                parseTimeInShow(argument, reader.value("a number of seconds and a file name"));
            const std::string& file = reader.value("a file name after the seconds");
            requireEnding(argument, file, {".png"});
            options.stills.push_back({time, file});
        } else if (argument == "--contact-sheet") {
            options.contactSheet = reader.value("a file name");
            requireEnding(argument, options.contactSheet, {".jpg", ".jpeg", ".png"});
        } else if (argument == "--smooth") {
            options.smooth = true;
        } else if (argument == "--fast") {
            options.fast = true;
        } else if (argument == "--silent") {
            options.silent = true;
        } else if (argument == "--jobs") {
            options.jobs = parseJobs(reader.value("a number"));
        } else if (argument == "--sshlogin") {
            options.machines = reader.value("the names of machines");
        } else if (!options.take(reader)) {
            throw UsageError("unknown option '" + argument + "'");
        }
    }
    if (options.video.empty() && options.stills.empty() && options.contactSheet.empty()) {
        options.video = "quelar.mp4";
    }
    check(options);
    return options;
}

FrameRange Options::range() const {
    const unsigned int end = to ? timeline::firstFrameFrom(*to) : timeline::SHOW_FRAMES;
    return {timeline::firstFrameFrom(from), std::min(end, timeline::SHOW_FRAMES) - 1};
}

std::string Options::help() { return std::string(USAGE) + ShowOptions::HELP + WAYS + MORE; }

} // namespace recorder
