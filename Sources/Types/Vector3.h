#pragma once

#include <cmath>
#include <ostream>

/// Three packed components, read as a point or direction (x, y, z) or as a colour (r, g, b).
/// Arrays of them go to OpenGL as they are.
template <typename T>
class Vector3 {
public:
    union {
        T x;
        T r;
    };
    union {
        T y;
        T g;
    };
    union {
        T z;
        T b;
    };

    Vector3() : x(0), y(0), z(0) {}
    Vector3(const T& x, const T& y, const T& z) : x(x), y(y), z(z) {}

    Vector3 operator+(const Vector3& v) const { return {x + v.x, y + v.y, z + v.z}; }
    Vector3 operator-(const Vector3& v) const { return {x - v.x, y - v.y, z - v.z}; }
    Vector3 operator*(float value) const { return {x * value, y * value, z * value}; }

    T dot(const Vector3& v) const { return x * v.x + y * v.y + z * v.z; }

    /// This x v, right-handed.
    Vector3 cross(const Vector3& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }

    /// Scales this vector to unit length; one of length zero has no direction and stays as it is.
    void normalise() {
        const T length = std::sqrt(dot(*this));
        if (length > 0) {
            *this = {x / length, y / length, z / length};
        }
    }
};

template <typename T>
std::ostream& operator<<(std::ostream& stream, const Vector3<T>& v) {
    return stream << "X: " << v.x << " Y: " << v.y << " Z: " << v.z;
}

using Vector3f = Vector3<float>;
static_assert(sizeof(Vector3f) == 3 * sizeof(float), "components are packed");
/// Red, green and blue, 0..1.
using Colour3 = Vector3<float>;
