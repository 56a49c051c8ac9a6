#include "Objects/Sphere.h"

#include "Utils/MathUtils.h"

#include <cassert>
#include <cmath>

// The surface point at a latitude and longitude, in degrees; the poles lie on the z axis.
static Vector3f surface(double size, float latitude, float longitude) {
    const double t = MathUtils::degToRan(latitude);
    const double p = MathUtils::degToRan(longitude);
    return {static_cast<float>(size * std::cos(t) * std::cos(p)),
            static_cast<float>(size * std::cos(t) * std::sin(p)), static_cast<float>(size * std::sin(t))};
}

Sphere::Sphere(Vector3f position, Vector3f rotation, Colour3 colour, float size, unsigned int nbPpL,
               float offset)
    : Rising(position, rotation, offset) {
    assert(nbPpL > 0);
    const float stepHigh = 180.0f / static_cast<float>(nbPpL);
    const float stepLine = 360.0f / static_cast<float>(nbPpL);
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(4) * nbPpL * nbPpL);
    for (unsigned int k = 0; k < nbPpL; ++k) {
        const float lower = -90.0f + static_cast<float>(k) * stepHigh;
        const float upper = lower + stepHigh;
        for (unsigned int j = 0; j < nbPpL; ++j) {
            const float from = static_cast<float>(j) * stepLine;
            const float to = from + stepLine;
            points.emplace_back(surface(size, upper, from), colour);
            points.emplace_back(surface(size, upper, to), colour);
            points.emplace_back(surface(size, lower, to), colour);
            points.emplace_back(surface(size, lower, from), colour);
        }
    }
    renderer.addLines(points);
}
