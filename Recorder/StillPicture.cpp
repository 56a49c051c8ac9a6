#include "StillPicture.h"

#include "Encoder.h"

#include <utility>

namespace recorder {

void StillPicture::take(const Frame& shown) {
    std::vector<std::string> arguments = frameInput(frameSize);
    arguments.insert(arguments.end(),
                     {"-vf", "vflip", "-pix_fmt", "rgb24", "-c:v", "png", "-f", "image2pipe"});
    Encoder encoder(std::move(arguments), draft.getDraft(), getName());
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
