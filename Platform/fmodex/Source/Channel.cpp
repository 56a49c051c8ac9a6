#include "Channel.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fmodex {

namespace {

/// The device moves on in steps of some 20 ms. Of each difference from it only a part is made up for, so that
/// the position runs smoothly, and follows the device within a third of a second at 200 reports a second.
constexpr std::int64_t SMOOTHING = 64;

/// With a difference above this the device has stumbled, and the position follows at once. Microseconds.
constexpr std::int64_t STUMBLE = 100000;

} // namespace

Channel::Channel(std::shared_ptr<const Track> track, const Clock& clock, bool paused, bool onDevice)
    : track(std::move(track)), clock(clock), onDevice(onDevice), paused(paused) {
    if (!paused && !onDevice) {
        run(0);
    }
}

bool Channel::isOver() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return hasEnded();
}

void Channel::stop() {
    const std::lock_guard<std::mutex> lock(mutex);
    stopped = true;
}

bool Channel::isPaused() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return paused;
}

void Channel::setPaused(bool newPaused) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (newPaused == paused) {
        return;
    }
    paused = newPaused;
    if (paused) {
        hold();
    } else if (!onDevice) {
        run(base);
    }
}

std::int64_t Channel::getPosition() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return heard();
}

void Channel::setPosition(std::int64_t newPosition) {
    const std::lock_guard<std::mutex> lock(mutex);
    ticking = false;
    base = newPosition;
    floor = newPosition;
    ++jumps;
    if (!paused && !onDevice) {
        run(newPosition);
    }
}

void Channel::getSpectrum(float* values, int count) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (paused || hasEnded()) {
        std::fill_n(values, count, 0.0f);
        return;
    }
    Spectrum& spectrum = spectra.try_emplace(count, count).first->second;
    std::vector<Frame>& frames = spectrum.getFrames();
    // The frame that is heard now goes to the top of the triangle.
    track->copy(frameAt(heard()) - count, frames.size(), frames.data());
    spectrum.measure(values);
}

Channel::Order Channel::getOrder() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return {hasEnded(), paused, jumps, frameAt(heard())};
}

void Channel::follow(std::int64_t place, std::uint64_t afterJumps) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (paused || afterJumps != jumps) {
        return; // the device has not been told yet
    }
    if (!ticking) {
        run(place);
        return;
    }
    floor = heard();
    const std::int64_t behind = place - running();
    base += std::abs(behind) > STUMBLE ? behind : behind / SMOOTHING;
}

void Channel::wait() {
    const std::lock_guard<std::mutex> lock(mutex);
    hold();
}

void Channel::leaveDevice() {
    const std::lock_guard<std::mutex> lock(mutex);
    onDevice = false;
    if (!paused && !ticking) {
        run(base);
    }
}

std::int64_t Channel::running() const { return ticking ? base + clock.now() - anchor : base; }

std::int64_t Channel::heard() const { return std::max(floor, running()); }

std::int64_t Channel::frameAt(std::int64_t position) const { return position * track->getRate() / 1000000; }

bool Channel::hasEnded() const { return stopped || track->isOver(frameAt(heard())); }

void Channel::hold() {
    base = heard();
    floor = base;
    ticking = false;
}

void Channel::run(std::int64_t from) {
    base = from;
    anchor = clock.now();
    ticking = true;
}

} // namespace fmodex
