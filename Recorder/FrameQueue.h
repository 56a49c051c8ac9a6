#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <vector>

namespace recorder {

/// A frame on its way from the show to the files.
struct Frame {
    unsigned int number = 0; ///< in the show, from 0
    std::vector<unsigned char> pixels;
};

/// Frames between the thread that draws and the one that writes, oldest first, in a fixed number of slots
/// that are allocated once. The drawing thread waits when all are full: no frame is ever dropped. One thread
/// on each side; a slot belongs to whoever got it until it is handed on.
class FrameQueue {
public:
    FrameQueue(std::size_t slots, std::size_t frameBytes);

    /// Drawing side: an empty slot, then hand it on; at the end close, after which nothing is added.
    Frame& beginFill();
    void endFill();
    void close();

    /// Writing side: the oldest full slot, or null once the queue is closed and empty; then give it back.
    const Frame* beginTake();
    void endTake();

private:
    std::vector<Frame> slots;
    std::size_t filled = 0; ///< ever since the start, as taken
    std::size_t taken = 0;
    bool closed = false;
    std::mutex mutex;
    std::condition_variable changed;
};

} // namespace recorder
