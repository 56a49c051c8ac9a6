#pragma once

#include "FrameQueue.h"
#include "FrameSize.h"

#include <string>

namespace recorder {

// Something that is made of the show's frames. It is opened on the show's thread once the size of the frames
// is known; then it gets, on the writing thread and in order, every frame it wants; at last it is finished,
// on the show's thread again. Failures are std::runtime_error with one line.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    virtual void open(const FrameSize& size) = 0;
    virtual bool wants(unsigned int frame) const = 0;
    virtual unsigned int getLastFrame() const = 0;
    virtual void take(const Frame& frame) = 0;

    // Completes the result and answers one line about it; an empty one if too few frames came to make
    // anything.
    virtual std::string finish() = 0;

    virtual const std::string& getName() const = 0;
};

} // namespace recorder
