#include "StillPicture.h"

#include "Encoder.h"
#include "describe.h"

namespace recorder {

void StillPicture::take(const Frame& shown) {
    std::vector<std::string> arguments = frameInput(frameSize);
    const std::initializer_list<std::string> output = {
        "-vf", "vflip", "-pix_fmt", "rgb24", "-c:v", "png", "-f", "image2pipe", "file:" + draft.getDraft()};
    arguments.insert(arguments.end(), output);
    Encoder encoder(arguments);
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
