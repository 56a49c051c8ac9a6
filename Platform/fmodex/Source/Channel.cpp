#include "Channel.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fmodex {

namespace {

// The device moves on in steps of some 20 ms. Of each difference from it only a part is made up for, so that
// the position runs smoothly, and follows the device within a third of a second at 200 reports a second.
constexpr std::int64_t smoothing = 64;

// With a difference above this the device has stumbled, and the position follows at once. Microseconds.
constexpr std::int64_t stumble = 100000;

} // namespace

Channel::Channel(std::shared_ptr<const Track> track, const Clock& clock, bool paused, bool onDevice)
    : track_(std::move(track)), clock_(clock), onDevice_(onDevice), paused_(paused) {
    if (!paused && !onDevice) {
        run(0);
    }
}

bool Channel::over() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return isOver();
}

void Channel::stop() {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopped_ = true;
}

bool Channel::paused() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return paused_;
}

void Channel::setPaused(bool paused) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (paused == paused_) {
        return;
    }
    paused_ = paused;
    if (paused) {
        hold();
    } else if (!onDevice_) {
        run(base_);
    }
}

std::int64_t Channel::position() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return heard();
}

void Channel::setPosition(std::int64_t position) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ticking_ = false;
    base_ = position;
    floor_ = position;
    ++jumps_;
    if (!paused_ && !onDevice_) {
        run(position);
    }
}

void Channel::spectrum(float* values, int count) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (paused_ || isOver()) {
        std::fill_n(values, count, 0.0F);
        return;
    }
    Spectrum& spectrum = spectra_.try_emplace(count, count).first->second;
    std::vector<Frame>& frames = spectrum.frames();
    // The frame that is heard now goes to the top of the triangle.
    track_->copy(frameAt(heard()) - count, frames.size(), frames.data());
    spectrum.measure(values);
}

Channel::Order Channel::order() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {isOver(), paused_, jumps_, frameAt(heard())};
}

void Channel::follow(std::int64_t heard, std::uint64_t jumps) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (paused_ || jumps != jumps_) {
        return; // the device has not been told yet
    }
    if (!ticking_) {
        run(heard);
        return;
    }
    floor_ = this->heard();
    const std::int64_t behind = heard - running();
    base_ += std::abs(behind) > stumble ? behind : behind / smoothing;
}

void Channel::wait() {
    const std::lock_guard<std::mutex> lock(mutex_);
    hold();
}

void Channel::leaveDevice() {
    const std::lock_guard<std::mutex> lock(mutex_);
    onDevice_ = false;
    if (!paused_ && !ticking_) {
        run(base_);
    }
}

std::int64_t Channel::running() const { return ticking_ ? base_ + clock_.now() - anchor_ : base_; }

std::int64_t Channel::heard() const { return std::max(floor_, running()); }

std::int64_t Channel::frameAt(std::int64_t position) const { return position * track_->rate() / 1000000; }

bool Channel::isOver() const { return stopped_ || track_->isOver(frameAt(heard())); }

void Channel::hold() {
    base_ = heard();
    floor_ = base_;
    ticking_ = false;
}

void Channel::run(std::int64_t from) {
    base_ = from;
    anchor_ = clock_.now();
    ticking_ = true;
}

} // namespace fmodex
