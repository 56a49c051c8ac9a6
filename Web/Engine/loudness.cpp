// How loud a song of the visitor's own is, measured part by part by the page.

#include "Loudness.h"

#include <emscripten.h>

extern "C" {

EMSCRIPTEN_KEEPALIVE song::Loudness* newLoudness(unsigned int rate) { return new song::Loudness(rate); }
/// Left and right by turns.
EMSCRIPTEN_KEEPALIVE void addToLoudness(song::Loudness* loudness, const short* frames, unsigned int count) {
    loudness->add(frames, count);
}
EMSCRIPTEN_KEEPALIVE float gainOf(const song::Loudness* loudness) { return loudness->getGain(); }
}
