#include "ShowOptions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace recorder {

namespace {

constexpr unsigned int SMALLEST_SIDE = 16;
constexpr unsigned int LARGEST_WIDTH = 3840;
constexpr unsigned int LARGEST_HEIGHT = 2160;
// The settings file keeps its numbers as single floats: above this one, two seeds could be the same.
constexpr unsigned int LARGEST_SEED = 1U << 24U;

FrameSize parseSize(const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    const auto width = wholeNumber(text.substr(0, cross));
    const auto height = wholeNumber(text.substr(std::min(cross + 1, text.size())));
    if (!width || !height) {
        throw UsageError("--size: '" + text + "' is not WIDTHxHEIGHT");
    }
    requireAllowedSize(*width, *height);
    return {*width, *height};
}

unsigned int parseSeed(const std::string& text) {
    const auto seed = wholeNumber(text);
    if (!seed || *seed > LARGEST_SEED) {
        throw UsageError("--seed: '" + text + "' is not a whole number from 0 to 16777216");
    }
    return *seed;
}

} // namespace

void requireAllowedSize(double width, double height) {
    if (width < SMALLEST_SIDE || height < SMALLEST_SIDE || width > LARGEST_WIDTH || height > LARGEST_HEIGHT) {
        std::array<char, 100> size{};
        std::snprintf(size.data(), size.size(), "%.0fx%.0f", width, height);
        throw UsageError(std::string("the size ") + size.data() + " is outside 16x16 to 3840x2160");
    }
}

std::optional<unsigned int> wholeNumber(const std::string& text) {
    unsigned int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || stop != end || error != std::errc()) {
        return std::nullopt;
    }
    return number;
}

bool ArgumentReader::advance() {
    if (!optionsAreOver && next < arguments.size() && arguments[next] == "--") {
        optionsAreOver = true;
        ++next;
    }
    current = next++;
    return current < arguments.size();
}

bool ArgumentReader::isOption() const { return !optionsAreOver && get().size() > 1 && get().front() == '-'; }

const std::string& ArgumentReader::value(const char* meaning) {
    if (next >= arguments.size()) {
        throw UsageError(get() + " needs " + meaning);
    }
    return arguments[next++];
}

bool ShowOptions::take(ArgumentReader& reader) {
    const std::string& option = reader.get();
    if (option == "--help" || option == "-h") {
        wantsHelp = true;
    } else if (option == "--size") {
        size = parseSize(reader.value("a size such as 640x480"));
    } else if (option == "--seed") {
        seed = parseSeed(reader.value("a number"));
    } else if (option == "--track") {
        setTrack(reader.value("a file name"));
    } else if (option == "--data") {
        dataFolder = reader.value("a folder");
    } else {
        return false;
    }
    return true;
}

void ShowOptions::setTrack(const std::string& file) {
    if (!track.empty()) {
        throw UsageError("two songs named, '" + track + "' and '" + file + "'");
    }
    track = file;
}

} // namespace recorder
