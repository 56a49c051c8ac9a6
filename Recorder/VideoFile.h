#pragma once

#include "DraftFile.h"
#include "Encoder.h"
#include "FrameSink.h"
#include "VideoFormat.h"

#include <memory>
#include <string>

namespace recorder {

/// The frames of a range and the track's sound beside them, as an MP4 file. A recording that is stopped early
/// leaves a shorter one, but none of less than a second.
class VideoFile : public FrameSink {
public:
    VideoFile(const std::string& file, VideoFormat format);

    void open(const FrameSize& size) override;
    bool wants(unsigned int frame) const override { return format.range.holds(frame); }
    unsigned int getLastFrame() const override { return format.range.last; }
    void take(const Frame& frame) override;
    std::string finish() override;
    const std::string& getName() const override { return draft.getName(); }

private:
    DraftFile draft;
    VideoFormat format;
    FrameSize frameSize{};
    unsigned int frames = 0;
    std::unique_ptr<Encoder> encoder;
};

} // namespace recorder
