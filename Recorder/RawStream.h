#pragma once

#include "FrameRange.h"
#include "FrameSink.h"

#include <string>
#include <vector>

namespace recorder {

/// The frames of a range as bare RGB pixels, three bytes each, rows from the top, on standard output. From
/// its construction on, standard output is for the frames alone: whatever the show prints goes to standard
/// error.
class RawStream : public FrameSink {
public:
    explicit RawStream(const FrameRange& range);
    ~RawStream() override;
    RawStream(const RawStream&) = delete;
    RawStream& operator=(const RawStream&) = delete;

    void open(const FrameSize& size) override;
    bool wants(unsigned int frame) const override { return range.holds(frame); }
    unsigned int getLastFrame() const override { return range.last; }
    void take(const Frame& frame) override;
    std::string finish() override;
    const std::string& getName() const override { return name; }

private:
    std::string name = "standard output";
    FrameRange range;
    FrameSize frameSize{};
    int output;
    unsigned int frames = 0;
    std::vector<unsigned char> packed;
};

} // namespace recorder
