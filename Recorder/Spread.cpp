#include "Spread.h"

#include "Encoder.h"
#include "ProgressLine.h"
#include "StopRequest.h"
#include "describe.h"
#include "format.h"
#include "report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <set>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace recorder {

namespace fs = std::filesystem;

namespace {

// Scenes cost more or less: with several pieces each, no process waits for long for the last one.
constexpr unsigned int PIECES_PER_JOB = 3;

constexpr int SECOND = 1000; // ms

/// Each as often as it is to have processes, by turns.
std::vector<std::string> machinesOf(const Options& options) {
    std::vector<std::string> machines;
    for (unsigned int i = 0; i < options.jobs; ++i) {
        std::istringstream names(options.machines);
        for (std::string name; std::getline(names, name, ',');) {
            machines.push_back(name);
        }
    }
    return machines;
}

/// So many ranges of about the same length, one after the other.
std::vector<FrameRange> split(const FrameRange& all, std::size_t wanted) {
    const auto pieces = static_cast<unsigned int>(std::min<std::size_t>(wanted, all.count()));
    std::vector<FrameRange> ranges;
    for (unsigned int i = 0; i < pieces; ++i) {
        ranges.push_back(
            {all.first + all.count() * i / pieces, all.first + all.count() * (i + 1) / pieces - 1});
    }
    return ranges;
}

} // namespace

Spread::Spread(const Options& options, const Track& track)
    : options(options),
      track(track),
      range(options.rangeWithin(track.getFrames())),
      draft(options.video),
      ranges(split(range, PIECES_PER_JOB * machinesOf(options).size())) {
    track.requireOther(draft);
    // Each piece takes a few files.
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
}

int Spread::run() {
    record();
    if (const int signal = StopRequest::getSignal(); signal != 0) {
        say("stopped before there was anything to keep");
        return STOPPED_BY_SIGNAL + signal;
    }
    join();
    const std::string summary = describeFrames(range.count(), *options.size) + " in " + draft.getName() +
                                " (" + describeBytes(draft.getBytes()) + "), " +
                                std::to_string(ranges.size()) + " pieces";
    draft.publish();
    say(summary);
    return 0;
}

std::string Spread::describeShow(const std::string& dataFolder) {
    std::set<fs::path> files = {fs::path(dataFolder) / "music/quelar.mp3"};
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(fs::path(dataFolder) / "shaders", none)) {
        files.insert(entry.path());
    }
    std::uint32_t hash = 2166136261; // FNV-1a
    for (const fs::path& file : files) {
        std::ifstream in(file, std::ios::binary);
        std::for_each(std::istreambuf_iterator<char>(in), {},
                      [&](char byte) { hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619; });
    }
    return QUELAR_VERSION "-" + std::to_string(hash);
}

Piece::Order Spread::order() const {
    Arguments command = {fs::read_symlink("/proc/self/exe").string(),
                         "--output",
                         "-",
                         "--piece",
                         describeShow(options.dataFolder),
                         "--data",
                         fs::canonical(options.dataFolder).string(),
                         "--size",
                         options.size->text(),
                         "--seed",
                         std::to_string(*options.seed)};
    const auto add = [&](bool wanted, const Arguments& more) {
        command.insert(command.end(), more.begin(), wanted ? more.end() : more.begin());
    };
    add(!options.track.empty(), {"--track", "-"});
    add(options.whole, {"--whole"});
    add(options.smooth, {"--smooth"});
    add(options.fast, {"--fast"});
    return {command, options.track.empty() ? "/dev/null" : track.getSongFile(),
            fs::path(draft.getTarget()).parent_path(), options.patience};
}

void Spread::record() {
    const Piece::Order order = this->order();
    std::vector<std::string> idle = machinesOf(options);
    ProgressLine progress(range.count());
    std::size_t complete = 0;
    while (complete < ranges.size() && StopRequest::getSignal() == 0) {
        while (!idle.empty() && pieces.size() < ranges.size()) {
            pieces.push_back(std::make_unique<Piece>(order, ranges[pieces.size()], idle.front()));
            idle.erase(idle.begin());
        }
        std::vector<pollfd> voices;
        for (const auto& piece : pieces) {
            for (const int voice : piece->getVoices()) {
                voices.push_back({voice, POLLIN, 0});
            }
        }
        poll(voices.data(), voices.size(), SECOND);
        unsigned int done = 0;
        for (const auto& piece : pieces) {
            if (!piece->isComplete()) {
                piece->listen();
                if (piece->isComplete()) {
                    idle.push_back(piece->getMachine());
                    ++complete;
                }
            }
            done += piece->getDone();
        }
        progress.update(done);
    }
}

void Spread::join() {
    const int list = memfd_create("pieces", MFD_CLOEXEC);
    std::ofstream out(pathOf(list));
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        out << "file '" << pieces[i]->getPath() << "'\nduration "
            << describeSeconds("%.3f", ranges[i].count()) << '\n';
    }
    out.close();
    Encoder(joined({{"-f", "concat", "-safe", "0", "-i", pathOf(list)},
                    track.soundOf(range),
                    {"-c:v", "copy"},
                    format::mp4(options)}),
            {draft.getPath(), draft.getName()})
        .finish();
    close(list);
}

} // namespace recorder
