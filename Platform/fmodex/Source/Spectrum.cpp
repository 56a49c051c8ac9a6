#include "Spectrum.h"

#include <cmath>
#include <cstddef>
#include <new>

namespace fmodex {

Spectrum::Spectrum(int count)
    : frames(2 * static_cast<std::size_t>(count)),
      window(frames.size()),
      weighted(frames.size()),
      entries(static_cast<std::size_t>(count) + 1),
      transform(kiss_fftr_alloc(2 * count, 0, nullptr, nullptr)) {
    if (transform == nullptr) {
        throw std::bad_alloc();
    }
    // Rises from 0 at the first frame to 1 in the middle. The weights add up to count, and a sine of
    // amplitude 1 puts half of that into its entry.
    const float scale = 2.0f / static_cast<float>(count) / 32768.0f;
    for (int i = 0; i < 2 * count; ++i) {
        const float height = 1.0f - std::abs(static_cast<float>(i - count)) / static_cast<float>(count);
        window[i] = height * scale;
    }
}

void Spectrum::measure(float* values, float gain) {
    // Plain pointers and counts, for the compiler to take several entries at a time.
    const std::size_t size = frames.size();
    const Frame* const heard = frames.data();
    const float* const weights = window.data();
    float* const samples = weighted.data();
    for (std::size_t i = 0; i < size; ++i) {
        samples[i] = weights[i] * static_cast<float>(heard[i].left);
    }

    kiss_fft_cpx* const bands = entries.data();
    kiss_fftr(transform.get(), samples, bands);

    for (std::size_t k = 0; k < size / 2; ++k) {
        values[k] = gain * std::sqrt(bands[k].r * bands[k].r + bands[k].i * bands[k].i);
    }
}

} // namespace fmodex
