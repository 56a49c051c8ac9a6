#include "ShowSettings.h"

#include "ShowOptions.h"
#include "Utils/Settings.h"

#include <cmath>
#include <iostream>

namespace recorder {

namespace {

/// The settings as the show reads them. What there is to say about the file, the show says.
Settings readQuietly(const std::string& file) {
    std::streambuf* const said = std::cerr.rdbuf(nullptr);
    Settings settings(file);
    std::cerr.rdbuf(said);
    return settings;
}

/// The whole pixels of a side of the picture. There is no screen whose size 0 could stand for.
double side(const Settings& settings, const char* name, float usual) {
    const double pixels = std::trunc(settings.getSetting(name, usual));
    return pixels == 0.0 ? usual : pixels;
}

} // namespace

ShowSettings::ShowSettings(const ShowOptions& options) {
    const Settings settings = readQuietly(options.dataFolder + "/settings.ini");
    if (options.size) {
        size = *options.size;
    } else {
        const double width = side(settings, "hres", 640.0f);
        const double height = side(settings, "vres", 480.0f);
        requireAllowedSize(width, height);
        size = {static_cast<unsigned int>(width), static_cast<unsigned int>(height)};
    }
    seed = options.seed ? std::to_string(*options.seed)
                        : std::to_string(std::lround(std::trunc(settings.getSetting("seed", 42.0f))));
}

} // namespace recorder
