#pragma once

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

// One sample of both sides, as the sound card takes it: -32768..32767.
struct Frame {
    std::int16_t left;
    std::int16_t right;
};

// A piece of music in memory, which a thread of its own decodes from an MP3 file, from front to back. What
// has been decoded is never changed, so that it is read without a lock.
class Track {
public:
    // Opens a file and starts to decode it. A patient track lets those wait who ask for what is not decoded
    // yet. Throws the FMOD_ERR_FILE_ errors.
    Track(const std::string& path, bool patient);
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;
    ~Track();

    // Its title in UTF-8, else the name of its file.
    const std::string& name() const { return name_; }

    // Frames per second.
    long rate() const { return rate_; }

    // How many frames have been decoded, counted from the front.
    std::int64_t decoded() const { return decoded_.load(std::memory_order_acquire); }

    // Whether that is all there is. If so, a decoded() asked for afterwards is the length.
    bool complete() const { return complete_.load(std::memory_order_acquire); }

    // The length in frames: as decoded, or before that as the file states it. Waits where it does not.
    std::int64_t length() const;

    // Whether a frame lies behind the end.
    bool isOver(std::int64_t frame) const;

    // Copies count frames from the one numbered first; where the track has none (yet), there is silence.
    void copy(std::int64_t first, std::size_t count, Frame* frames) const;

private:
    static constexpr std::int64_t blockFrames = 65536;
    using Block = std::unique_ptr<Frame[]>;

    // A regular file that has bytes, open for reading. Throws when it is anything else.
    class File {
    public:
        explicit File(const std::string& path);
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        ~File();
        int descriptor() const { return descriptor_; }
        std::int64_t size() const { return size_; } // bytes

    private:
        int descriptor_;
        std::int64_t size_ = 0;
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
    void publish(std::int64_t frames, bool complete);

    bool patient_;
    File file_;
    std::unique_ptr<mpg123_handle_struct, CloseDecoder> decoder_;
    std::string name_;
    long rate_ = 0;
    std::int64_t statedLength_ = -1; // frames; -1: the file does not say

    // As many as the file can fill, made one by one: their number never changes under a reader.
    std::vector<Block> blocks_;
    std::atomic<std::int64_t> decoded_{0};
    std::atomic<bool> complete_{false};
    std::atomic<bool> stopping_{false};
    mutable std::mutex mutex_;
    mutable std::condition_variable progress_;
    std::thread thread_;
};

} // namespace fmodex
