#include "Song.h"

#include "Loudness.h"
#include "faultOfFile.h"

#include <fmod_errors.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <endian.h>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace song {

namespace {

/// What FFmpeg writes of a file's sound: a head that tells how many sides there are, then the samples.
class Decoder {
public:
    explicit Decoder(const std::string& file) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error(std::strerror(errno));
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        // Files only: what a playlist fetches from elsewhere is no song. Beyond two sides are mixed to two.
        const std::string source = "file:" + file;
        constexpr const char* FORM = "aformat=sample_rates=44100:channel_layouts=mono|stereo";
        const std::array command{"ffmpeg",
                                 "-v",
                                 "quiet",
                                 "-protocol_whitelist",
                                 "file",
                                 "-i",
                                 source.c_str(),
                                 "-map",
                                 "0:a:0",
                                 "-af",
                                 FORM,
                                 "-c:a",
                                 "pcm_f32be",
                                 "-f",
                                 "au",
                                 "-",
                                 static_cast<const char*>(nullptr)};
        const int fault = ::posix_spawnp(&process, "ffmpeg", &actions, nullptr,
                                         const_cast<char* const*>(command.data()), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        output.reset(::fdopen(ends[0], "rb"));
        if (fault != 0) {
            throw std::runtime_error("FFmpeg cannot be started: " + std::string(std::strerror(fault)));
        }
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() {
        output.reset();
        ::waitpid(process, nullptr, 0);
    }

    /// Reads words of four bytes, as many as there are, up to count. Answers how many.
    std::size_t read(std::uint32_t* words, std::size_t count) {
        const std::size_t found = std::fread(words, sizeof *words, count, output.get());
        for (std::size_t i = 0; i < found; ++i) {
            words[i] = be32toh(words[i]);
        }
        return found;
    }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> output;
    pid_t process = 0;
};

/// As a browser's page rounds it. No number at all, which damage may look like, is full scale.
short sampleOf(std::uint32_t word) {
    float value = 0;
    std::memcpy(&value, &word, sizeof value);
    return static_cast<short>(std::fmax(-32768, std::fmin(32767, std::floor(value * 32768.0 + 0.5))));
}

std::vector<short> decode(const std::string& file) {
    constexpr std::size_t HEAD = 6; // words: a mark, where the samples begin, three more, and the sides
    Decoder decoder(file);
    std::array<std::uint32_t, 16384> words{};
    std::vector<short> samples;
    if (decoder.read(words.data(), HEAD) == HEAD) {
        const bool single = words[5] == 1;
        decoder.read(words.data(), words[1] / sizeof words[0] - HEAD);
        while (const std::size_t found = decoder.read(words.data(), words.size())) {
            for (std::size_t i = 0; i < found; ++i) {
                samples.insert(samples.end(), single ? 2 : 1, sampleOf(words[i]));
            }
        }
    }
    return samples;
}

} // namespace

Song::Song(const std::string& file) {
    const FMOD_RESULT fault = faultOfFile(file);
    if (fault != FMOD_OK) {
        throw std::runtime_error(file + ": " + FMOD_ErrorString(fault));
    }
    samples = decode(file);
    if (samples.empty()) {
        throw std::runtime_error(file + ": The music file has no sound that FFmpeg can read.");
    }
    Loudness loudness(RATE);
    loudness.add(samples.data(), samples.size() / 2);
    gain = loudness.getGain();
}

} // namespace song
