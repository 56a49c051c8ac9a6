#pragma once

#include "Channel.h"

#include <AL/al.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace fmodex {

/// A channel on the sound device: hands it the track in portions and tells the channel where it is. To be
/// used by one thread, in the context of the device.
class Voice {
public:
    /// Throws FMOD_ERR_MEMORY when the device takes no more voices.
    explicit Voice(std::shared_ptr<Channel> played);
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    ~Voice();

    /// To be called some 200 times a second. Returns false when the channel is over.
    bool update();

    /// Tells the channel where update found it, if it plays. Not to be done when the device has been lost
    /// meanwhile, for then it was not there.
    void report();

    Channel& getChannel() { return *channel; }

private:
    /// A third of a second at 44100 Hz, which bridges any delay of the thread.
    static constexpr int PORTIONS = 4;
    static constexpr std::int64_t PORTION_FRAMES = 4096;

    void go(const Channel::Order& order);
    void takeBack();
    void hand();
    void measure();

    const std::shared_ptr<Channel> channel;
    const Track& track;
    std::uint64_t jumps = 0;
    std::int64_t first = 0; ///< the first frame that the device holds
    std::int64_t next = 0;  ///< the first that it has not been handed
    bool measured = false;
    std::int64_t heard = 0; ///< if measured, in microseconds
    ALuint source = 0;
    std::array<ALuint, PORTIONS> buffers{};
    std::vector<ALuint> idle; ///< those buffers that are not on the device
    std::vector<Frame> portion;
};

} // namespace fmodex
