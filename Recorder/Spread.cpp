#include "Spread.h"

#include "Encoder.h"
#include "Process.h"
#include "ShowSettings.h"
#include "StageFolder.h"
#include "StopRequest.h"
#include "Timeline.h"
#include "describe.h"
#include "report.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace recorder {

namespace fs = std::filesystem;

namespace {

constexpr const char* PROGRAM = "parallel";

// Scenes cost more or less: with several pieces each, no process waits for long for the last one.
constexpr unsigned int PIECES_PER_JOB = 3;

// In the folder of the pieces.
constexpr const char* RANGES = "ranges";
constexpr const char* LIST = "list";
constexpr const char* LOG = "log";
constexpr const char* COMPLAINTS = "complaints";
constexpr const char* SONG = "song.mp3";

std::string pieceName(const std::string& number) { return "piece-" + number + ".mp4"; }

/// When a frame is shown, or how long so many are.
std::string seconds(unsigned int frame) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", frame * timeline::FRAME_MS / 1000.0);
    return text.data();
}

/// How many the user named; this one, if none.
unsigned int countMachines(const Options& options) {
    return 1 + static_cast<unsigned int>(std::count(options.machines.begin(), options.machines.end(), ','));
}

/// So many ranges of about the same length, one after the other.
std::vector<FrameRange> split(const FrameRange& all, unsigned int wanted) {
    const unsigned int pieces = std::min(wanted, all.count());
    std::vector<FrameRange> ranges;
    for (unsigned int i = 0; i < pieces; ++i) {
        ranges.push_back(
            {all.first + all.count() * i / pieces, all.first + all.count() * (i + 1) / pieces - 1});
    }
    return ranges;
}

/// Of those that say something.
std::string lastLine(const fs::path& file) {
    std::ifstream in(file);
    std::string last;
    for (std::string line; std::getline(in, line);) {
        last = line.empty() ? last : line;
    }
    return last;
}

} // namespace

Spread::Spread(const Options& options)
    : Spread(options, ShowSettings(options), findData(options.dataFolder)) {}

Spread::Spread(const Options& options, const ShowSettings& settings, const fs::path& data)
    : options(options),
      size(settings.size),
      data(data),
      draft(options.video),
      folder(makeTemporaryFolder()),
      format(VideoFormat::of(options, settings,
                             options.track.empty() ? trackIn(data).string()
                                                   : fs::absolute(options.track).string())),
      pieces(split(options.range(), PIECES_PER_JOB * options.jobs * countMachines(options))) {
    Encoder::requireInstalled();
    if (!Process::isInstalled(PROGRAM)) {
        throw std::runtime_error("GNU parallel is not installed; it spreads the recording");
    }
}

int Spread::run() {
    StopRequest::listen();
    prepare();
    const int status = record();
    if (const int signal = StopRequest::getSignal(); signal != 0) {
        say("stopped before there was anything to keep");
        return STOPPED_BY_SIGNAL + signal;
    }
    if (status != 0) {
        throw std::runtime_error(findFault());
    }
    join();
    const std::string summary = describeFrames(format.range.count(), size) + " in " + describeFile(draft) +
                                ", " + std::to_string(pieces.size()) + " pieces";
    draft.publish();
    say(summary);
    return 0;
}

Arguments Spread::command() const {
    Arguments recorder = {fs::read_symlink("/proc/self/exe").string(), "--data", data.string(), "--silent"};
    const auto add = [&](const Arguments& more) { recorder = joined({recorder, more}); };
    if (options.size) {
        add({"--size", options.size->text()});
    }
    if (options.seed) {
        add({"--seed", std::to_string(*options.seed)});
    }
    if (options.smooth) {
        add({"--smooth"});
    }
    if (options.fast) {
        add({"--fast"});
    }
    Arguments machines;
    if (!options.machines.empty()) {
        machines = {"--sshlogin", options.machines, "--workdir", folder.getPath().string(),
                    "--return",   pieceName("{#}"), "--cleanup"};
    }
    if (!options.track.empty()) {
        add({"--track", SONG});
        machines = joined({machines, {"--basefile", SONG}});
    }
    return joined({{PROGRAM, "--will-cite", "--quote", "--jobs", std::to_string(options.jobs), "--halt",
                    "now,fail=1", "--joblog", LOG, "--results", "{#}", "--colsep", " "},
                   machines,
                   recorder,
                   {"--from", "{1}", "--to", "{2}", pieceName("{#}"), "::::", RANGES}});
}

void Spread::prepare() const {
    std::ofstream ranges(folder.getPath() / RANGES);
    std::ofstream list(folder.getPath() / LIST);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        ranges << seconds(pieces[i].first) << ' ' << seconds(pieces[i].last + 1) << '\n';
        list << "file '" << pieceName(std::to_string(i + 1)) << "'\nduration " << seconds(pieces[i].count())
             << '\n';
    }
    if (!options.track.empty()) {
        fs::copy_file(options.track, folder.getPath() / SONG);
    }
    if (!ranges.flush() || !list.flush()) {
        throw std::runtime_error("can't write to the temporary folder " + folder.getPath().string());
    }
}

int Spread::record() const {
    const fs::path home = fs::current_path();
    fs::current_path(folder.getPath());
    // What it would write to the user's home.
    setenv("PARALLEL_HOME", (folder.getPath() / "home").c_str(), 1);
    // On every machine: whatever its user's login shell is, if there is one at all.
    setenv("PARALLEL_SHELL", "/bin/sh", 1);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    const int complaints = open(COMPLAINTS, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    Process parallel(command(), {nothing, nothing, complaints}, Process::Keyboard::OURS);
    close(nothing);
    close(complaints);
    fs::current_path(home);
    std::optional<int> status;
    while (!(status = parallel.poll())) {
        if (StopRequest::getSignal() != 0) {
            // The first time it only starts no more pieces, the second time it ends those that run.
            parallel.send(SIGTERM);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return *status;
}

std::string Spread::findFault() const {
    std::ifstream log(folder.getPath() / LOG);
    std::string line;
    std::getline(log, line);
    while (std::getline(log, line)) {
        std::istringstream columns(line);
        std::size_t number = 0;
        std::string host;
        std::string skipped;
        std::string status;
        std::string signal;
        columns >> number >> host >> skipped >> skipped >> skipped >> skipped >> status >> signal;
        if (status == "0" && signal == "0") {
            continue;
        }
        const FrameRange& piece = pieces.at(number - 1);
        const std::string reason = lastLine(folder.getPath() / (std::to_string(number) + ".err"));
        return "the piece from " + seconds(piece.first) + " to " + seconds(piece.last + 1) + " s failed" +
               (host == ":" ? "" : " on " + host) + ": " +
               (!reason.empty() ? reason
                : signal != "0" ? "killed by signal " + signal
                                : "status " + status);
    }
    return "GNU parallel failed: " + lastLine(folder.getPath() / COMPLAINTS);
}

void Spread::join() const {
    Encoder(joined({{"-f", "concat", "-safe", "0", "-i", (folder.getPath() / LIST).string()},
                    format.sound(),
                    {"-map", "0:v", "-c:v", "copy"},
                    format.file()}),
            draft.getDraft(), draft.getName())
        .finish();
}

} // namespace recorder
