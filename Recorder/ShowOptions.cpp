#include "ShowOptions.h"

#include <charconv>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <map>
#include <system_error>

namespace recorder {

namespace {

constexpr FrameSize SMALLEST = {16, 16};
constexpr FrameSize LARGEST = {3840, 2160};
// The show keeps its settings as single floats: above this one, two seeds could be the same.
constexpr unsigned int LARGEST_SEED = 1U << 24U;

constexpr const char* BYTE_ORDER_MARK = "\xEF\xBB\xBF";

/// The size, if there are such pictures.
FrameSize allowed(const FrameSize& size) {
    if (size.width < SMALLEST.width || size.height < SMALLEST.height || size.width > LARGEST.width ||
        size.height > LARGEST.height) {
        throw UsageError("the size " + size.text() + " is outside " + SMALLEST.text() + " to " +
                         LARGEST.text());
    }
    return size;
}

FrameSize parseSize(const std::string& text) {
    FrameSize size{};
    int end = 0;
    // A number of more digits than there is room for is not meant to be one.
    if (std::sscanf(text.c_str(), "%9u%*1[x]%9u%n", &size.width, &size.height, &end) != 2 ||
        text.find_first_not_of("0123456789x") != std::string::npos ||
        text[static_cast<std::size_t>(end)] != 0) {
        throw UsageError("--size: '" + text + "' is not WIDTHxHEIGHT");
    }
    return allowed(size);
}

} // namespace

void ShowOptions::addTo(CommandLine& line, bool songAlone) {
    line.add({"track", 0, "SONG", "play the show to this song in place of the data folder's track",
              [this](const auto& values) { setOnce(track, "songs", values[0]); }, songAlone});
    line.add({"size", 0, "WIDTHxHEIGHT",
              "size of the picture, " + SMALLEST.text() + " to " + LARGEST.text() +
                  "; else that of the settings file",
              [this](const auto& values) { size = parseSize(values[0]); }});
    line.add({"seed", 0, "NUMBER",
              "start of the show's random numbers, 0 to " + std::to_string(LARGEST_SEED) +
                  "; else that of the settings file",
              [this](const auto& values) { seed = wholeNumber("--seed", values[0], 0, LARGEST_SEED); }});
    line.add(
        {"data", 0, "DIR", "the show's data folder", [this](const auto& values) { dataFolder = values[0]; }});
}

void ShowOptions::readSettings(const FrameSize& screen) {
    const std::string file = dataFolder + "/settings.ini";
    std::map<std::string, std::string> settings;
    std::ifstream in(file);
    for (std::string name, value; in >> name;) {
        if (name.rfind(BYTE_ORDER_MARK, 0) == 0) {
            throw UsageError(file + " begins with a byte order mark, which hides its first name");
        }
        in >> value;
        double number = 0.0;
        const char* const end = value.data() + value.size();
        if (const auto read = std::from_chars(value.data(), end, number);
            !in || read.ptr != end || read.ec != std::errc()) {
            throw UsageError("'" + name + "' is not followed by a number in settings.ini");
        }
        settings[name] = value;
    }
    const auto number = [&](const std::string& name, unsigned int usual, unsigned int most) {
        return settings.count(name) == 0 ? usual
                                         : wholeNumber("the setting " + name, settings[name], 0, most);
    };
    if (!size) {
        const unsigned int width = number("hres", USUAL_SIZE.width, LARGEST.width);
        const unsigned int height = number("vres", USUAL_SIZE.height, LARGEST.height);
        size = allowed({width == 0 ? screen.width : width, height == 0 ? screen.height : height});
    }
    if (!seed) {
        seed = number("seed", defaults::SEED, LARGEST_SEED);
    }
}

} // namespace recorder
