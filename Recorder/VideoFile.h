#pragma once

#include "DraftFile.h"
#include "Encoder.h"
#include "FrameRange.h"
#include "FrameSink.h"

#include <memory>
#include <string>

namespace recorder {

// The frames of a range and the track's sound beside them, as an MP4 file.
class VideoFile : public FrameSink {
public:
    // The track is a sound file that starts with frame 0 of the show; an empty name makes a silent video.
    VideoFile(const std::string& file, const FrameRange& range, std::string track);

    void open(const FrameSize& size) override;
    bool wants(unsigned int frame) const override { return range.holds(frame); }
    unsigned int getLastFrame() const override { return range.last; }
    void take(const Frame& frame) override;
    std::string finish() override;
    const std::string& getName() const override { return draft.getName(); }

private:
    DraftFile draft;
    FrameRange range;
    std::string track;
    FrameSize frameSize{};
    unsigned int frames = 0;
    std::unique_ptr<Encoder> encoder;
};

} // namespace recorder
