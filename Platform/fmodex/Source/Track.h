#pragma once

#include "Frame.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// NOLINTNEXTLINE(readability-identifier-naming): named by the library
struct mpg123_handle_struct;

namespace fmodex {

/// A piece of music in memory, which a thread of its own decodes from an MP3 file, from front to back. What
/// has been decoded is never changed, so that it is read without a lock.
class Track {
public:
    /// Opens a file and starts to decode it. A patient track lets those wait who ask for what is not decoded
    /// yet. Throws the FMOD_ERR_FILE_ errors.
    Track(const std::string& path, bool patient);
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;
    ~Track();

    /// Its title in UTF-8, else the name of its file.
    const std::string& getName() const { return name; }

    /// Frames per second.
    long getRate() const { return rate; }

    /// How many frames have been decoded, counted from the front.
    std::int64_t getDecoded() const { return decoded.load(std::memory_order_acquire); }

    /// Whether that is all there is. If so, a getDecoded() asked for afterwards is the length.
    bool isComplete() const { return complete.load(std::memory_order_acquire); }

    /// The length in frames: as decoded, or before that as the file states it. Waits where it does not.
    std::int64_t getLength() const;

    /// Whether a frame lies behind the end.
    bool isOver(std::int64_t frame) const;

    /// Copies count frames from the one numbered first; where the track has none (yet), there is silence.
    void copy(std::int64_t first, std::size_t count, Frame* frames) const;

private:
    static constexpr std::int64_t BLOCK_FRAMES = 65536;
    using Block = std::unique_ptr<Frame[]>;

    /// A regular file that has bytes, open for reading. Throws when it is anything else.
    class File {
    public:
        explicit File(const std::string& path);
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        ~File();
        int getDescriptor() const { return descriptor; }
        std::int64_t getSize() const { return size; } ///< bytes

    private:
        int descriptor;
        std::int64_t size = 0;
    };
    struct CloseDecoder {
        void operator()(mpg123_handle_struct* decoder) const;
    };

    void openDecoder();
    void readName(const std::string& path);
    bool statesLength() const;
    void decode();
    bool isOurs() const;
    void append(const unsigned char* sound, std::size_t bytes);
    void waitFor(std::int64_t frames) const;
    void publish(std::int64_t frames, bool all);

    bool patient;
    File file;
    std::unique_ptr<mpg123_handle_struct, CloseDecoder> decoder;
    std::string name;
    long rate = 0;
    std::int64_t statedLength = -1; ///< frames; -1: the file does not say

    /// As many as the file can fill, made one by one: their number never changes under a reader.
    std::vector<Block> blocks;
    std::atomic<std::int64_t> decoded{0};
    std::atomic<bool> complete{false};
    std::atomic<bool> stopping{false};
    mutable std::mutex mutex;
    mutable std::condition_variable progress;
    std::thread thread;
};

} // namespace fmodex
