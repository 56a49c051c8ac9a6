#pragma once

#include "Track.h"

#include <kiss_fftr.h>

#include <memory>
#include <vector>

namespace fmodex {

// Takes the spectrum of 2 * count frames. Everything it needs is made once.
class Spectrum {
public:
    // count is a power of two.
    explicit Spectrum(int count);

    // Where the frames to look at are to be put.
    std::vector<Frame>& frames() { return frames_; }

    // Writes count magnitudes of the left side: 1 for a sine of full scale in the middle of its entry.
    void measure(float* values);

private:
    struct FreeTransform {
        void operator()(kiss_fftr_state* transform) const { kiss_fftr_free(transform); }
    };

    std::vector<Frame> frames_;
    std::vector<float> window_; // the triangle, and the scale of the result
    std::vector<float> weighted_;
    std::vector<kiss_fft_cpx> entries_; // count, and the one at half the rate, which is left out
    std::unique_ptr<kiss_fftr_state, FreeTransform> transform_;
};

} // namespace fmodex
