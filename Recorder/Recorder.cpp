#include "Recorder.h"

#include "DataFolder.h"
#include "Process.h"
#include "StopRequest.h"
#include "Timeline.h"
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <sys/wait.h>
#include <utility>

namespace recorder {

namespace {

std::vector<Film> claimAll(const Options& options, const Track& track) {
    std::vector<Film> films;
    const auto claim = [&](Film film) {
        if (const Draft* const draft = film.getDraft(); draft != nullptr) {
            for (const Film& other : films) {
                if (other.getDraft() != nullptr && other.getDraft()->getTarget() == draft->getTarget()) {
                    throw UsageError("two things are to be " + film.getName());
                }
            }
            std::error_code none;
            if (std::filesystem::equivalent(draft->getTarget(), track.getSongFile(), none)) {
                throw UsageError(film.getName() + " is the song");
            }
        }
        films.push_back(std::move(film));
    };
    const FrameRange range = options.rangeWithin(track.getFrames());
    Encoder::requireInstalled();
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
    FrameLink link(play.size.bytes());
    Process drawing([&] {
        link.take(FrameLink::Side::DRAWING);
        return Performance(play, round, link).run();
    });
    link.take(FrameLink::Side::WRITING);
    using Kind = FrameLink::Event::Kind;
    bool asked = false;
    for (FrameLink::Event event{}; event.kind != Kind::OVER; event = link.next(films.front().getStream())) {
        if (event.kind == Kind::DRAWN) {
            for (Film& film : films) {
                if (film.nextFrom(event.frame) == event.frame) {
                    film.take(event.pixels);
                }
            }
            link.giveBack();
        }
        if (isPiece) {
            progress.count(films.front().getTaken());
        } else if (event.kind != Kind::NOTHING_YET) {
            progress.update(event.frame + 1);
        }
        if (const int signal = StopRequest::getSignal(); signal != 0 && !asked) {
            drawing.send(signal);
            asked = true;
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
