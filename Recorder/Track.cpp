#include "Track.h"

#include "Timeline.h"
#include "report.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace recorder {

namespace fs = std::filesystem;

namespace {

/// A copy in memory of what can be read only once.
int spool(const std::string& file) {
    const int copy = memfd_create("song", MFD_CLOEXEC);
    std::ifstream in(file, std::ios::binary);
    std::ofstream out(pathOf(copy), std::ios::binary);
    if (in && in.peek() != std::ifstream::traits_type::eof() && !(out << in.rdbuf()).flush()) {
        throw std::bad_alloc();
    }
    return copy;
}

} // namespace

Track::Track(const Options& options) : frames(timeline::SHOW_FRAMES) {
    const bool isHeard = !options.silent && !options.video.empty() && options.video != "-";
    if (options.track.empty()) {
        soundFile = (fs::absolute(options.dataFolder) / "music/quelar.mp3").string();
        if (isHeard && !fs::exists(soundFile)) {
            say("The music file does not exist. The video is silent.");
            soundFile.clear();
        }
    } else {
        const std::string file = options.track == "-" ? pathOf(STDIN_FILENO) : options.track;
        soundFile = fs::absolute(file).string();
        const fs::file_status status = fs::status(file);
        if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
            spooled = spool(file);
            soundFile = pathOf(spooled);
        }
        try {
            song.emplace(soundFile);
        } catch (const std::runtime_error& error) {
            // by the user's own name for it
            throw std::runtime_error(options.track + std::string(error.what()).substr(soundFile.size()));
        }
        songFile = soundFile;
        if (options.whole) {
            // The last frame is the one that the song ends in.
            constexpr std::int64_t FRAME = std::int64_t{song::Song::RATE} * timeline::FRAME_MS;
            frames = static_cast<unsigned int>((song->getCount() * 1000 + FRAME - 1) / FRAME);
        }
    }
    if (!isHeard) {
        soundFile.clear();
    }
}

Track::~Track() { close(spooled); }

void Track::requireOther(const Draft& draft) const {
    if (std::error_code none; fs::equivalent(draft.getTarget(), songFile, none)) {
        throw UsageError(draft.getName() + " is the song");
    }
}

Arguments Track::soundOf(const FrameRange& range) const {
    if (soundFile.empty()) {
        return {};
    }
    // The track is decoded from its start: a jump into it would land a little off.
    const auto milliseconds = [](unsigned int frame) {
        return std::to_string(frame * timeline::FRAME_MS) + "ms";
    };
    return {"-i",
            "file:" + soundFile,
            "-map",
            "0:v",
            "-map",
            "1:a:0",
            "-c:a",
            "aac",
            "-b:a",
            "192k",
            "-af",
            "asetpts=N/SR/TB,apad,atrim=start=" + milliseconds(range.first) +
                ":end=" + milliseconds(range.last + 1) + ",asetpts=PTS-STARTPTS"};
}

} // namespace recorder
