#include "3D/Camera/LinearCamera.h"

#include "Utils/MathUtils.h"

LinearCamera::LinearCamera(const Vector3f& positionStart, const Vector3f& positionEnd,
                           const Vector3f& interestPointStart, const Vector3f& interestPointEnd,
                           const Vector3f& up, unsigned int msTime)
    : GLUCamera(positionStart, interestPointStart, up),
      positionStart(positionStart),
      positionEnd(positionEnd),
      interestPointStart(interestPointStart),
      interestPointEnd(interestPointEnd),
      msTime(msTime) {}

bool LinearCamera::update(unsigned int actualTime) {
    if (startTime == 0) {
        startTime = actualTime;
        return true;
    }
    const std::uint32_t time = actualTime - startTime;
    if (time > msTime) {
        return false;
    }
    const float t = static_cast<float>(time) / static_cast<float>(msTime);
    position = MathUtils::lerp(positionStart, positionEnd, t);
    direction = MathUtils::lerp(interestPointStart, interestPointEnd, t);
    return true;
}

void LinearCamera::apply() { lookAt(direction); }

unsigned int LinearCamera::getMsTime() const { return msTime; }
