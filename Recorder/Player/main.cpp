// quelar-play: the show in its window, with what the user wants different for this time: the size, the seed
// or the music. It runs on a stage of its own, so that the data folder stays as it is.

#include "Process.h"
#include "ShowOptions.h"
#include "StageFolder.h"
#include "checkTrack.h"
#include "report.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <sys/wait.h>

namespace {

constexpr const char* MORE = R"(
A longer song is cut with the show, after a shorter one it runs silent.

Exit status: 1 the song can't be played, 2 wrong option; all others are the show's own.
)";

/// The signals that a user ends a program with, and the one that tells that a child has ended.
sigset_t signals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGCHLD}) {
        sigaddset(&set, signal);
    }
    return set;
}

/// The exit status of the show, which gets every signal that is meant for it.
int awaitEnd(recorder::Process& show) {
    const sigset_t set = signals();
    std::optional<int> status;
    while (!(status = show.poll())) {
        siginfo_t signal{};
        // What comes from the keyboard the show has got already.
        if (sigwaitinfo(&set, &signal) != SIGCHLD && signal.si_code != SI_KERNEL) {
            show.send(signal.si_signo);
        }
    }
    return WIFEXITED(*status) ? WEXITSTATUS(*status) : recorder::STOPPED_BY_SIGNAL + WTERMSIG(*status);
}

int play(const recorder::ShowOptions& options) {
    recorder::checkTrack(options.track);
    const recorder::StageFolder stage(options.dataFolder, {options.size, options.seed, options.track});
    const auto program = std::filesystem::read_symlink("/proc/self/exe").replace_filename("quelar");
    std::filesystem::current_path(stage.getPath());
    stage.shareWithChildren();
    const sigset_t set = signals();
    sigprocmask(SIG_BLOCK, &set, nullptr);
    recorder::Process show({program.string()}, {}, recorder::Process::Keyboard::SHARED);
    return awaitEnd(show);
}

} // namespace

int main(int argc, char** argv) {
    return recorder::attempt([&] {
        recorder::CommandLine line("Usage: " + recorder::commandName() + R"( [OPTION]... [SONG]
Plays the show, full screen, to its end or to Escape.

)",
                                   MORE);
        recorder::ShowOptions options;
        options.addTo(line, true);
        options.answer = line.parse({argv + 1, argv + argc});
        if (!options.answer.empty()) {
            recorder::answer(options.answer);
            return 0;
        }
        return play(options);
    });
}
