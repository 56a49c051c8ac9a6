#pragma once

#include <cstdint>

/// A periodic tick for a frame loop, on SDL's clock: up for one frame each time more than the rate has
/// passed. Ticks do not add up: a long stall gives one.
class Impulsor {
public:
    /// impulsionRate: ms between two ticks, of which a tick needs one more.
    explicit Impulsor(unsigned int impulsionRate);

    /// Once a frame.
    void update();
    /// Whether the last update ticked.
    bool needImpulse() const;

private:
    std::uint32_t lastUpdate; ///< ms, when it ticked last
    std::uint32_t impulsionRate;
    bool impulsion = false;
};
