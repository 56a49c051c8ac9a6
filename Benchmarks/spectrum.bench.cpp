// What one spectrum costs, next to the bare transform of its size.

#include "Player.h"

#include <benchmark/benchmark.h>
#include <kiss_fftr.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace {

void bareTransform(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    kiss_fftr_cfg transform = kiss_fftr_alloc(2 * count, 0, nullptr, nullptr);
    std::vector<float> samples(static_cast<std::size_t>(2 * count));
    for (int i = 0; i < 2 * count; ++i) {
        samples[i] = std::sin(0.1f * static_cast<float>(i));
    }
    std::vector<kiss_fft_cpx> entries(count + 1);
    while (state.KeepRunning()) {
        kiss_fftr(transform, samples.data(), entries.data());
        benchmark::DoNotOptimize(entries.data());
    }
    kiss_fftr_free(transform);
}

void oneSpectrum(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const Noise noise(3LL * 44100);
    FMOD_Song_Set(&noise.song);
    Player player;
    player.play("noise");
    std::vector<float> values(count);
    clockTime += 1500000;
    while (state.KeepRunning()) {
        FMOD_Channel_GetSpectrum(player.channel, values.data(), count, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        benchmark::DoNotOptimize(values.data());
    }
    FMOD_Song_Set(nullptr);
}

BENCHMARK(bareTransform)->Arg(64)->Arg(512)->Arg(8192);
BENCHMARK(oneSpectrum)->Arg(64)->Arg(512)->Arg(8192);

} // namespace

BENCHMARK_MAIN();
