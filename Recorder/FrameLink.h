#pragma once

#include <array>
#include <cstddef>

namespace recorder {

/// The way of frames from the process that draws to the one that writes, oldest first, through a fixed number
/// of slots in memory that both have. The drawing one waits when all are full: no frame is ever dropped. Each
/// side notices when the other is gone. To be made before the two part.
class FrameLink {
public:
    /// Throws std::runtime_error with one line.
    explicit FrameLink(std::size_t frameBytes);
    ~FrameLink();
    FrameLink(const FrameLink&) = delete;
    FrameLink& operator=(const FrameLink&) = delete;

    enum class Side { DRAWING, WRITING };

    /// Which of the two this process is.
    void take(Side side);

    /// Drawing side: the empty slot for the next frame, then hand it on; or, of a frame that nobody wants,
    /// just that it was.
    unsigned char* beginFill();
    void endFill(unsigned int frame);
    void pass(unsigned int frame);

    /// What comes out.
    struct Event {
        enum class Kind { NOTHING_YET, PASSED, DRAWN, OVER } kind;
        unsigned int frame;
        const unsigned char* pixels; ///< if it was drawn; until it is given back
    };

    /// Writing side: waits for the next frame, but not for long. Throws std::runtime_error if meanwhile
    /// nobody reads from a stream any more (-1: none).
    Event next(int stream);
    void giveBack() const;

private:
    struct Message {
        unsigned int frame;
        bool drawn;
    };

    void send(const Message& message) const;

    static constexpr unsigned int SLOTS = 4; // evens out frames that are slow to draw or to encode

    std::size_t frameBytes;
    unsigned char* memory;
    std::array<int, 2> ends{-1, -1};
    int end = -1; ///< this side's
    unsigned int empty = SLOTS;
    unsigned int filled = 0; ///< since the start, or taken
};

} // namespace recorder
