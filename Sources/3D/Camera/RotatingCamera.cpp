#include "3D/Camera/RotatingCamera.h"

#include "Utils/MathUtils.h"

#include <cmath>

RotatingCamera::RotatingCamera(const Vector3f& interestPoint, float distance, float moveStep)
    : GLUCamera(Vector3f(), interestPoint, Vector3f(0, 1, 0)), distance(distance), moveStep(moveStep) {}

void RotatingCamera::update() {
    const double a = MathUtils::degToRan(angle);
    const double radius = distance;
    position.x = static_cast<float>(direction.x - std::sin(a) * radius);
    position.y = distance;
    position.z = static_cast<float>(direction.z - std::cos(a) * radius);
    angle += moveStep;
}

void RotatingCamera::apply() { lookAt(direction); }
