#include "Options.h"

#include "Timeline.h"
#include "describe.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <regex>
#include <system_error>

namespace recorder {

namespace {

constexpr unsigned int MOST_JOBS = 256;

// "@" stands for the name of the program.
constexpr const char* NOTES = R"(
With --still or --contact-sheet there is no video unless its FILE is named too. A file appears under its
name once it is whole, and replaces what was there. A video needs even sides: an odd side grows by one
black row or column; stills and bare frames keep the size asked for. In pictures higher than 480 pixels
lines and points grow with them. A longer song is cut with the show, but for --whole; after a shorter one
the show runs silent. SONG may be any file that FFmpeg reads, "-" is standard input.
Ctrl-C ends the video early but whole, if there is a second of it; a video made in pieces is dropped.

Exit status: 0 done, 1 recording failed, 2 wrong option, 130 stopped by Ctrl-C (143 by a request to
terminate); 252, 253 and 254 are the show's own failures, handed on.

Examples:
  @                                     the whole show, as quelar.mp4
  @ --size 1920x1080 --seed 7 big.mp4
  @ --track song.flac --whole song.mp4  moved by another song, to its end
  @ --from 53.1 --to 63.17 part.mp4     one scene
  @ --still 40 forty.png --contact-sheet sheet.jpg
  @ --size 3840x2160 --smooth --jobs 8 --sshlogin :,attic,cellar huge.mp4
  @ --size 320x240 - | ffplay -f rawvideo -pixel_format rgb24 -video_size 320x240 -framerate 200/3 -
)";

/// In milliseconds.
unsigned int parseTime(const std::string& option, const std::string& text) {
    double seconds = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (stop != end || error != std::errc() || !(seconds >= 0.0)) {
        throw UsageError(option + ": '" + text + "' is not a number of seconds");
    }
    return static_cast<unsigned int>(
        std::lround(std::min(seconds * 1000.0, static_cast<double>(Options::FOREVER))));
}

/// endings: in small letters, with " or " between.
void requireEnding(const std::string& option, const std::string& file, const std::string& endings) {
    std::string ending = std::filesystem::path(file).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (ending.empty() || (endings + " ").find(ending + " ") == std::string::npos) {
        throw UsageError(option + ": the name '" + file + "' should end in " + endings);
    }
}

} // namespace

void Options::parse(const Arguments& arguments) {
    const std::string end = describeSeconds("%.1f", timeline::SHOW_FRAMES);
    CommandLine line("Usage: " + commandName() + R"( [OPTION]... [FILE]
Records the show as a video, without a screen, a graphics card or a sound card.

)",
                     std::regex_replace(NOTES, std::regex("@"), commandName()));
    const auto flag = [&](const char* name, bool& value, const char* meaning) {
        line.add({name, 0, "", meaning, [&value](const auto&) { value = true; }});
    };
    line.add({"output", 'o', "FILE",
              "the MP4 file to write (H.264 picture, AAC sound); quelar.mp4 by default.\n"
              "\"-\" writes bare frames to standard output instead: RGB, 24 bits a pixel,\n"
              "rows from the top, 200/3 frames a second, no sound",
              [&](const Arguments& values) {
                  if (values[0] != "-") {
                      requireEnding("video", values[0], ".mp4 or .m4v");
                  }
                  setOnce(video, "videos", values[0]);
              },
              true});
    addTo(line, false);
    flag("whole", whole,
         "go on to the end of the song: the show starts over with the next seed, and\n"
         "moments count in the song");
    line.add({"from", 0, "SECONDS", "record from this moment of the show on (0 by default)",
              [&](const Arguments& values) { from = parseTime("--from", values[0]); }});
    line.add({"to", 0, "SECONDS", "record up to this moment (the end of the show, " + end + ", by default)",
              [&](const Arguments& values) { to = parseTime("--to", values[0]); }});
    flag("smooth", smooth,
         "draw twice as large each way and average: lines without stairs, in all that is made");
    flag("fast", fast, "encode the video with less effort: done sooner, two and a half times as large");
    flag("silent", silent, "leave the sound out of the video");
    line.add({"still", 0, "SECONDS FILE",
              "write the frame shown at this moment as a PNG file; may be repeated",
              [&](const Arguments& values) {
                  requireEnding("--still", values[1], ".png");
                  stills.push_back({parseTime("--still", values[0]), values[1]});
              }});
    line.add({"contact-sheet", 0, "FILE",
              "write one sheet of three frames from each scene, JPEG or PNG by the file's name",
              [&](const Arguments& values) {
                  requireEnding("--contact-sheet", values[0], ".jpg or .jpeg or .png");
                  contactSheet = values[0];
              }});
    line.add({"jobs", 0, "NUMBER", "let so many processes make the video piece by piece, 1 to 256",
              [&](const Arguments& values) { jobs = wholeNumber("--jobs", values[0], 1, MOST_JOBS); }});
    line.add({"sshlogin", 0, "MACHINES",
              "have them on each of these machines, named as for ssh and parted by commas\n"
              "(\":\" is this one); they need the same show at the same place, and ffmpeg",
              [&](const Arguments& values) { machines = values[0]; }});
    line.add({"patience", 0, "SECONDS",
              "give up when a machine says nothing for so long (" + std::to_string(patience) + ")",
              [&](const Arguments& values) { patience = wholeNumber("--patience", values[0], 1, FOREVER); }});
    line.add({"piece", 0, "SHOW", "", [&](const Arguments& values) { piece = values[0]; }});
    answer = line.parse(arguments);

    if (video.empty() && stills.empty() && contactSheet.empty()) {
        video = "quelar.mp4";
    }
    if (jobs > 0 && (video == "-" || !stills.empty() || !contactSheet.empty())) {
        throw UsageError("--jobs is for a video file and nothing else");
    }
    if (jobs == 0 && machines != ":") {
        throw UsageError("--sshlogin needs --jobs beside it");
    }
    if (whole && track.empty()) {
        throw UsageError("--whole needs --track beside it");
    }
    if (!whole) {
        rangeWithin(timeline::SHOW_FRAMES);
    }
}

FrameRange Options::rangeWithin(unsigned int frames) const {
    const auto require = [&](const std::string& option, unsigned int time) {
        if (timeline::frameAt(time) >= frames) {
            throw UsageError(option + ": the " + (whole ? "song" : "show") + " is over at " +
                             describeSeconds("%.1f", frames) + " seconds");
        }
    };
    require("--from", from);
    for (const StillRequest& still : stills) {
        require("--still", still.time);
    }
    const FrameRange range = {timeline::firstFrameFrom(from),
                              std::min(timeline::firstFrameFrom(to), frames) - 1};
    if (range.last + 1 <= range.first) {
        throw UsageError("--from and --to leave no frame between them");
    }
    return range;
}

} // namespace recorder
