#include "StillPicture.h"

#include "Encoder.h"
#include "VideoFormat.h"

namespace recorder {

void StillPicture::take(const Frame& shown) {
    Encoder encoder(joined({frameInput(frameSize),
                            {"-vf", "vflip", "-pix_fmt", "rgb24", "-c:v", "png", "-f", "image2pipe"}}),
                    draft.getDraft(), getName());
    encoder.write(shown.pixels);
    encoder.finish();
    taken = true;
}

std::string StillPicture::finish() {
    if (!taken) {
        return "";
    }
    draft.publish();
    return "frame " + std::to_string(frame) + " of " + frameSize.text() + " in " + getName();
}

} // namespace recorder
