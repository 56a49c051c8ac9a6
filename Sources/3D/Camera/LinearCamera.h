#pragma once

#include "3D/Camera/GLUCamera.h"

#include <cstdint>

/// One move of a scene: the eye and the point looked at each go along a straight line, in a given time.
/// direction is the point looked at, in the world. A move that has ended stays ended.
class LinearCamera : public GLUCamera {
public:
    /// msTime: the duration in ms, more than 0.
    LinearCamera(const Vector3f& positionStart, const Vector3f& positionEnd,
                 const Vector3f& interestPointStart, const Vector3f& interestPointEnd, const Vector3f& up,
                 unsigned int msTime);

    /// Goes to where the move is at actualTime, in ms on the engine clock; the first call starts it (unless
    /// at time 0). False once the duration has passed: the camera then stays where it was seen last.
    bool update(unsigned int actualTime);
    void apply() override;

    unsigned int getMsTime() const;

private:
    Vector3f positionStart;
    Vector3f positionEnd;
    Vector3f interestPointStart;
    Vector3f interestPointEnd;
    std::uint32_t startTime = 0; ///< 0: not started
    std::uint32_t msTime;
};
