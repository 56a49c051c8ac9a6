#include "Spectrum.h"

#include "Error.h"

#include <cmath>
#include <cstddef>

namespace fmodex {

Spectrum::Spectrum(int count)
    : frames_(2 * static_cast<std::size_t>(count)),
      window_(frames_.size()),
      weighted_(frames_.size()),
      entries_(static_cast<std::size_t>(count) + 1),
      transform_(kiss_fftr_alloc(2 * count, 0, nullptr, nullptr)) {
    require(transform_ != nullptr, FMOD_ERR_MEMORY);
    // Rises from 0 at the first frame to 1 in the middle. The weights add up to count, and a sine of
    // amplitude 1 puts half of that into its entry.
    const float scale = 2.0F / static_cast<float>(count) / 32768.0F;
    for (int i = 0; i < 2 * count; ++i) {
        const float height = 1.0F - std::abs(static_cast<float>(i - count)) / static_cast<float>(count);
        window_[i] = height * scale;
    }
}

void Spectrum::measure(float* values) {
    // Plain pointers and counts, for the compiler to take several entries at a time.
    const std::size_t size = frames_.size();
    const Frame* const frames = frames_.data();
    const float* const window = window_.data();
    float* const weighted = weighted_.data();
    for (std::size_t i = 0; i < size; ++i) {
        weighted[i] = window[i] * static_cast<float>(frames[i].left);
    }

    kiss_fft_cpx* const entries = entries_.data();
    kiss_fftr(transform_.get(), weighted, entries);

    for (std::size_t k = 0; k < size / 2; ++k) {
        values[k] = std::sqrt(entries[k].r * entries[k].r + entries[k].i * entries[k].i);
    }
}

} // namespace fmodex
