#include "Options.h"

#include "Timeline.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace recorder {

namespace {

constexpr unsigned int SMALLEST_SIDE = 16;
constexpr unsigned int LARGEST_WIDTH = 3840;
constexpr unsigned int LARGEST_HEIGHT = 2160;
// The settings file keeps its numbers as single floats: above this one, two seeds could be the same.
constexpr unsigned int LARGEST_SEED = 1U << 24U;

constexpr const char* HELP =
    R"(Usage: record [OPTION]... [FILE]
Records the show as a video, without a screen, a graphics card or a sound card.

  FILE, -o FILE          the MP4 file to write (H.264 picture, AAC sound); quelar.mp4 by default.
                         "-" writes bare frames to standard output instead: RGB, 24 bits a pixel, rows
                         from the top, 200/3 frames a second, no sound
  --size WIDTHxHEIGHT    size of the picture, 16x16 to 3840x2160; else that of the settings file
  --seed NUMBER          start of the show's random numbers, 0 to 16777216; else that of the settings file
  --from SECONDS         record from this moment of the show on (0 by default)
  --to SECONDS           record up to this moment (the end of the show, 103.2, by default)
  --still SECONDS FILE   write the frame shown at this moment as a PNG file; may be repeated
  --contact-sheet FILE   write one sheet of three frames from each scene, JPEG or PNG by the file's name,
                         smaller than 400 KB
  --data DIR             the show's data folder ("data" by default)
  --help                 show this text

With --still or --contact-sheet there is no video unless its FILE is named too. A file appears under its
name once it is whole, and replaces what was there. A video needs even sides: an odd side grows by one
black row or column; stills and bare frames keep the size asked for. Ctrl-C ends the video early but whole.

Exit status: 0 done, 1 recording failed, 2 wrong option, 130 stopped by Ctrl-C (143 by a request to
terminate); 252, 253 and 254 are the show's own failures, handed on.

Examples:
  record                                    the whole show, as quelar.mp4
  record --size 1920x1080 --seed 7 big.mp4
  record --from 53.1 --to 63.17 part.mp4    one scene
  record --still 40 forty.png --contact-sheet sheet.jpg
  record --size 320x240 - | ffplay -f rawvideo -pixel_format rgb24 -video_size 320x240 -framerate 200/3 -
)";

// The arguments, taken one after the other.
class ArgumentReader {
public:
    explicit ArgumentReader(const std::vector<std::string>& arguments) : arguments(arguments) {}

    bool atEnd() const { return position == arguments.size(); }

    const std::string& next() { return arguments[position++]; }

    const std::string& valueOf(const std::string& option, const char* meaning) {
        if (atEnd()) {
            throw UsageError(option + " needs " + meaning);
        }
        return next();
    }

private:
    const std::vector<std::string>& arguments;
    std::size_t position = 0;
};

std::optional<unsigned int> wholeNumber(const char* begin, const char* end) {
    unsigned int number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (begin == end || stop != end || error != std::errc()) {
        return std::nullopt;
    }
    return number;
}

FrameSize parseSize(const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    const auto width = wholeNumber(text.data(), text.data() + cross);
    const auto height =
        wholeNumber(text.data() + std::min(cross + 1, text.size()), text.data() + text.size());
    if (!width || !height) {
        throw UsageError("--size: '" + text + "' is not WIDTHxHEIGHT");
    }
    if (*width < SMALLEST_SIDE || *height < SMALLEST_SIDE || *width > LARGEST_WIDTH ||
        *height > LARGEST_HEIGHT) {
        throw UsageError("--size: " + text + " is outside 16x16 to 3840x2160");
    }
    return {*width, *height};
}

unsigned int parseSeed(const std::string& text) {
    const auto seed = wholeNumber(text.data(), text.data() + text.size());
    if (!seed || *seed > LARGEST_SEED) {
        throw UsageError("--seed: '" + text + "' is not a whole number from 0 to 16777216");
    }
    return *seed;
}

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

} // namespace

Options Options::parse(const std::vector<std::string>& arguments) {
    Options options;
    ArgumentReader reader(arguments);
    while (!reader.atEnd()) {
        const std::string& argument = reader.next();
        if (argument == "--help" || argument == "-h") {
            options.wantsHelp = true;
        } else if (argument == "-o") {
            setVideo(options, reader.valueOf(argument, "a file name"));
        } else if (argument == "--size") {
            options.size = parseSize(reader.valueOf(argument, "a size such as 640x480"));
        } else if (argument == "--seed") {
            options.seed = parseSeed(reader.valueOf(argument, "a number"));
        } else if (argument == "--from") {
            options.from = parseTimeInShow(argument, reader.valueOf(argument, "a number of seconds"));
        } else if (argument == "--to") {
            options.to = parseTime(argument, reader.valueOf(argument, "a number of seconds"));
        } else if (argument == "--still") {
            const unsigned int time =
                parseTimeInShow(argument, reader.valueOf(argument, "a number of seconds and a file name"));
            const std::string& file = reader.valueOf(argument, "a file name after the seconds");
            requireEnding(argument, file, {".png"});
            options.stills.push_back({time, file});
        } else if (argument == "--contact-sheet") {
            options.contactSheet = reader.valueOf(argument, "a file name");
            requireEnding(argument, options.contactSheet, {".jpg", ".jpeg", ".png"});
        } else if (argument == "--data") {
            options.dataFolder = reader.valueOf(argument, "a folder");
        } else if (argument.size() > 1 && argument.front() == '-') {
            throw UsageError("unknown option '" + argument + "'");
        } else {
            setVideo(options, argument);
        }
    }
    if (options.to && timeline::firstFrameFrom(*options.to) <= timeline::firstFrameFrom(options.from)) {
        throw UsageError("--from and --to leave no frame between them");
    }
    if (options.video.empty() && options.stills.empty() && options.contactSheet.empty()) {
        options.video = "quelar.mp4";
    }
    return options;
}

const char* Options::help() { return HELP; }

} // namespace recorder
