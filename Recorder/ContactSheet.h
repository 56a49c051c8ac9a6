#pragma once

#include "DraftFile.h"
#include "Encoder.h"
#include "FrameSink.h"
#include "Timeline.h"

#include <array>
#include <memory>
#include <string>

namespace recorder {

/// Small pictures of the whole show on one sheet, a row for each scene, as a JPEG or PNG file (by its name's
/// end) that stays small enough to be sent around.
class ContactSheet : public FrameSink {
public:
    /// The folder is for a working copy of the sheet; it must outlive this object.
    ContactSheet(const std::string& file, const std::string& folder);

    void open(const FrameSize& size) override;
    bool wants(unsigned int frame) const override;
    unsigned int getLastFrame() const override { return frames.back(); }
    void take(const Frame& frame) override;
    std::string finish() override;
    const std::string& getName() const override { return draft.getName(); }

private:
    static constexpr unsigned int PER_SCENE = 3;
    static constexpr std::size_t COUNT = PER_SCENE * (timeline::SCENES.size());

    DraftFile draft;
    std::string workingCopy;
    std::array<unsigned int, COUNT> frames{}; ///< ascending
    std::size_t taken = 0;
    std::unique_ptr<Encoder> encoder;
};

} // namespace recorder
