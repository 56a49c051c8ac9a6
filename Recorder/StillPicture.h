#pragma once

#include "DraftFile.h"
#include "FrameSink.h"

#include <string>

namespace recorder {

/// One frame of the show as a PNG file.
class StillPicture : public FrameSink {
public:
    StillPicture(const std::string& file, unsigned int frame) : draft(file), frame(frame) {}

    void open(const FrameSize& size) override { frameSize = size; }
    bool wants(unsigned int number) const override { return number == frame; }
    unsigned int getLastFrame() const override { return frame; }
    void take(const Frame& shown) override;
    std::string finish() override;
    const std::string& getName() const override { return draft.getName(); }

private:
    DraftFile draft;
    unsigned int frame;
    FrameSize frameSize{};
    bool taken = false;
};

} // namespace recorder
