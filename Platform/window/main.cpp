// quelar-play: the show in a window of its own, with what the user wants different for this time: the size,
// the seed or the music. Where there is no screen it is recorded instead.

#include "DataFolder.h"
#include "Player.h"
#include "Screen.h"
#include "ShowOptions.h"
#include "StopSignals.h"
#include "report.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace window {

namespace {

constexpr const char* MORE = R"(
A song may be any file that FFmpeg reads. It is played whole, the show starting over as often as it takes.

Exit status: 1 the song can't be played, 2 wrong option; all others are the show's own.
)";

/// Goes on as the recorder, to which it hands all that the user wants.
[[noreturn]] void record(const recorder::ShowOptions& options, const std::string& reason) {
    const char* const named = std::getenv("QUELAR_VIDEO"); // by the script that starts us
    const std::string video = named == nullptr ? "quelar.mp4" : named;
    recorder::say(reason + ": recording the show to " + video + " instead");
    recorder::Arguments command = {
        std::filesystem::read_symlink("/proc/self/exe").replace_filename("quelar-record"), "--data",
        options.dataFolder};
    if (options.size) {
        command.insert(command.end(), {"--size", options.size->text()});
    }
    if (options.seed) {
        command.insert(command.end(), {"--seed", std::to_string(*options.seed)});
    }
    if (!options.track.empty()) {
        command.insert(command.end(), {"--track", options.track, "--whole"});
    }
    command.insert(command.end(), {"--", video});
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (std::string& word : command) {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    execv(words.front(), words.data());
    throw std::runtime_error("can't start " + command.front() + ": " +
                             std::generic_category().message(errno));
}

int start(const recorder::Arguments& arguments) {
    recorder::CommandLine line("Usage: " + recorder::commandName() + R"( [OPTION]... [SONG]
Plays the show, full screen, to its end or to Escape.

)",
                               MORE);
    recorder::ShowOptions options;
    options.addTo(line, true);
    options.answer = line.parse(arguments);
    if (!options.answer.empty()) {
        recorder::answer(options.answer);
        return 0;
    }
    std::optional<Screen> screen;
    try {
        screen.emplace();
    } catch (const NoScreen& error) {
        record(options, error.what());
    }
    StopSignals::listen();
    const bool sized = options.size.has_value();
    options.readSettings({screen->getSize().width, screen->getSize().height});
    std::signal(SIGCHLD, SIG_DFL); // whoever started us may ignore it, and a song is read by a child
    std::optional<song::Song> song;
    if (!options.track.empty()) {
        song.emplace(options.track);
    }
    const host::DataFolder data(options.dataFolder);
    return Player(*screen, options, sized, song).play();
}

} // namespace

} // namespace window

int host::start(int argc, char** argv) {
    return recorder::attempt([&] { return window::start({argv + 1, argv + argc}); });
}
