#pragma once

#include "FrameQueue.h"
#include "FrameSize.h"

#include <string>

namespace recorder {

/// A recording that is stopped before it has that much of the show is none: what there is replaces no file.
constexpr unsigned int LEAST_MS = 1000;

/// Something that is made of the show's frames. It is opened on the show's thread once the size of the frames
/// is known; then it gets, on the writing thread and in order, every frame it wants; at last it is finished,
/// on the show's thread again. Failures are std::runtime_error with one line.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    virtual void open(const FrameSize& size) = 0;

    /// Whether it is to get that frame; the answer never changes.
    virtual bool wants(unsigned int frame) const = 0;

    /// The last frame it wants: once that is drawn the show need not go on for its sake.
    virtual unsigned int getLastFrame() const = 0;

    /// The pixels are only lent, until it returns.
    virtual void take(const Frame& frame) = 0;

    /// Completes the result and answers one line about it; an empty one if too few frames came to make
    /// anything.
    virtual std::string finish() = 0;

    /// How the user knows what is made.
    virtual const std::string& getName() const = 0;
};

} // namespace recorder
