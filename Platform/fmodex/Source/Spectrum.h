#pragma once

#include "Frame.h"

#include <kiss_fftr.h>

#include <memory>
#include <vector>

namespace fmodex {

/// Takes the spectrum of 2 * count frames. Everything it needs is made once.
class Spectrum {
public:
    /// count is a power of two.
    explicit Spectrum(int count);

    /// Where the frames to look at are to be put.
    std::vector<Frame>& getFrames() { return frames; }

    /// Writes count magnitudes of the left side, times gain: 1 for a sine of full scale in the middle of its
    /// entry.
    void measure(float* values, float gain = 1);

private:
    struct FreeTransform {
        void operator()(kiss_fftr_state* transform) const { kiss_fftr_free(transform); }
    };

    std::vector<Frame> frames;
    std::vector<float> window; ///< the triangle, and the scale of the result
    std::vector<float> weighted;
    std::vector<kiss_fft_cpx> entries; ///< count, and the one at half the rate, which is left out
    std::unique_ptr<kiss_fftr_state, FreeTransform> transform;
};

} // namespace fmodex
