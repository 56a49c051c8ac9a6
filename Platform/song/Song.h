#pragma once

#include <fmod_song.h>

#include <string>
#include <vector>

namespace song {

/// A song of somebody's own in memory, from any file that FFmpeg reads: music of any format, or the sound of
/// a video. Its samples are those that a browser decodes, to the bit where nothing has to be resampled.
class Song {
public:
    /// Frames per second, whatever the file has.
    static constexpr int RATE = 44100;

    /// Reads the whole file. Throws std::runtime_error with one sentence that names the file.
    explicit Song(const std::string& file);

    /// Left and right by turns, -32768..32767. A single side is on both.
    const std::vector<short>& getSamples() const { return samples; }

    /// Its length in frames.
    long long getCount() const { return static_cast<long long>(samples.size() / 2); }

    /// Likewise in ms, rounded down.
    long long getDuration() const { return getCount() * 1000 / RATE; }

    /// The factor that makes it as loud as the show's own track, for what the scenes hear of it.
    float getGain() const { return gain; }

    /// For the sound layer: plays from a moment on, in ms. Good for as long as the song.
    FMOD_SONG playedFrom(unsigned int start) const { return {samples.data(), getCount(), RATE, gain, start}; }

private:
    std::vector<short> samples;
    float gain = 1;
};

} // namespace song
