#pragma once

#include "Clock.h"
#include "Spectrum.h"
#include "Track.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace fmodex {

/// One playing of a track: where it is, and what is heard there. Its position runs by the clock. With a sound
/// device it starts when the device does, and is kept in step with it from then on.
class Channel {
public:
    /// What the device is to do.
    struct Order {
        bool over;           ///< let go of the channel
        bool paused;         ///< keep still
        std::uint64_t jumps; ///< how often the position was set: when that changes, go to ...
        std::int64_t frame;  ///< ... this one
    };

    Channel(std::shared_ptr<const Track> track, const Clock& clock, bool paused, bool onDevice);

    const Track& getTrack() const { return *track; }

    /// Whether it was stopped or has come to the end.
    bool isOver() const;
    void stop();

    bool isPaused() const;
    void setPaused(bool newPaused);

    /// In microseconds from the beginning.
    std::int64_t getPosition() const;
    void setPosition(std::int64_t newPosition);

    /// Writes count magnitudes, a power of two: all 0 when nothing is heard.
    void getSpectrum(float* values, int count);

    /// For the device: what it is to do; where it is (after that many jumps), as often as it finds out, in
    /// microseconds; that it waits for more of the track to be decoded; and that it has gone for good.
    Order getOrder() const;
    void follow(std::int64_t place, std::uint64_t afterJumps);
    void wait();
    void leaveDevice();

private:
    std::int64_t running() const;
    std::int64_t heard() const;
    std::int64_t frameAt(std::int64_t position) const;
    bool hasEnded() const;
    void hold();
    void run(std::int64_t from);

    const std::shared_ptr<const Track> track;
    const Clock clock;

    mutable std::mutex mutex;
    bool onDevice;
    bool paused;
    bool stopped = false;
    std::uint64_t jumps = 0;

    /// All in microseconds. While ticking, the position was base when the clock stood at anchor. It is never
    /// below floor: the device reports a start while its first sound is still on its way to the ear.
    bool ticking = false;
    std::int64_t base = 0;
    std::int64_t anchor = 0;
    std::int64_t floor = 0;

    std::map<int, Spectrum> spectra; ///< by count
};

} // namespace fmodex
