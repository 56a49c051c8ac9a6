#include "Recorder.h"

#include "DataFolder.h"
#include "Process.h"
#include "StopRequest.h"
#include "Timeline.h"
#include "report.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <set>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

namespace {

constexpr int PIPE_BYTES = 1 << 20; // more may not be allowed
constexpr int SECOND = 1000;        // ms

std::vector<Film> claimAll(const Options& options, const Track& track) {
    std::vector<Film> films;
    std::set<std::string> targets;
    const auto claim = [&](Film film) {
        if (film.getDraft() != nullptr) {
            track.requireOther(*film.getDraft());
            if (!targets.insert(film.getDraft()->getTarget()).second) {
                throw UsageError("two things are to be " + film.getName());
            }
        }
        films.push_back(std::move(film));
    };
    const FrameRange range = options.rangeWithin(track.getFrames());
    if (options.video == "-") {
        claim(Film::stream(options, range));
    } else if (!options.video.empty()) {
        claim(Film::video(options, track, range));
    }
    for (const StillRequest& still : options.stills) {
        claim(Film::still(options, still));
    }
    if (!options.contactSheet.empty()) {
        claim(Film::contactSheet(options));
    }
    return films;
}

} // namespace

Recorder::Recorder(const Options& options, const Track& track)
    : dataFolder(options.dataFolder),
      isPiece(!options.piece.empty()),
      films(claimAll(options, track)),
      play{*options.size, options.smooth, *options.seed, track.getSong(), [this](unsigned int frame) {
               unsigned int next = Film::NONE;
               for (const Film& film : films) {
                   next = std::min(next, film.nextFrom(frame));
               }
               return next;
           }} {}

int Recorder::run() {
    const host::DataFolder data(dataFolder);
    unsigned int last = 0;
    for (const Film& film : films) {
        last = std::max(last, film.getLastFrame());
    }
    ProgressLine progress(last + 1);
    int status = 0;
    unsigned int frame = play.next(0);
    while (frame != Film::NONE && status == 0 && StopRequest::getSignal() == 0) {
        const unsigned int round = frame / timeline::SHOW_FRAMES;
        status = record(round, progress);
        frame = play.next((round + 1) * timeline::SHOW_FRAMES);
    }
    progress.clear();
    return status == 0 ? finish() : status;
}

int Recorder::record(unsigned int round, ProgressLine& progress) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "can't draw");
    }
    fcntl(ends[1], F_SETPIPE_SZ, PIPE_BYTES);
    Process drawing(Process::Keyboard::SHARED, [&] {
        std::FILE* const out = fdopen(ends[1], "wb");
        std::setbuf(out, nullptr);
        return Performance(play, round, out).run();
    });
    close(ends[1]);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> in(fdopen(ends[0], "rb"), std::fclose);
    std::setbuf(in.get(), nullptr);
    std::vector<unsigned char> pixels(play.size.bytes());
    FrameNews news{};
    bool asked = false;
    while (true) {
        // It shows signs of life, and watches for those of others, while a frame takes long.
        std::array<pollfd, 2> watched{{{ends[0], POLLIN, 0}, {films.front().getStream(), 0, 0}}};
        poll(watched.data(), watched.size(), SECOND);
        if (watched[1].revents != 0) {
            throw std::runtime_error("nobody reads standard output any more");
        }
        if (watched[0].revents != 0) {
            if (std::fread(&news, sizeof news, 1, in.get()) != 1 ||
                (news.drawn && std::fread(pixels.data(), 1, pixels.size(), in.get()) != pixels.size())) {
                break;
            }
            for (Film& film : films) {
                if (film.nextFrom(news.frame) == news.frame) {
                    film.take(pixels);
                }
            }
            progress.update(news.frame + 1);
        }
        if (isPiece) {
            progress.count(films.front().getTaken());
        }
        if (const int signal = StopRequest::getSignal(); signal != 0 && !std::exchange(asked, true)) {
            drawing.send(signal);
        }
    }
    const int status = drawing.wait();
    if (WIFSIGNALED(status)) {
        throw std::runtime_error("the show was killed by signal " + std::to_string(WTERMSIG(status)));
    }
    return WEXITSTATUS(status);
}

int Recorder::finish() {
    const int signal = StopRequest::getSignal();
    bool anything = false;
    for (Film& film : films) {
        if (const std::string& summary = film.end(); !summary.empty()) {
            say(summary);
            anything = true;
        } else if (signal == 0) {
            throw std::runtime_error("the show ended before there was anything for " + film.getName());
        }
    }
    if (signal == 0) {
        return 0;
    }
    say(anything ? "stopped early" : "stopped before there was anything to keep");
    return STOPPED_BY_SIGNAL + signal;
}

} // namespace recorder
