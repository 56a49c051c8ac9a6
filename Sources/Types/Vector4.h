#pragma once

#include "Types/Vector3.h"

#include <cmath>

/// Four packed components, read as homogeneous coordinates (x, y, z, w) or as a colour (r, g, b, a).
/// A vector that is given no fourth component gets 1: a colour is opaque unless it says otherwise.
template <typename T>
class Vector4 {
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
    union {
        T w;
        T a;
    };

    Vector4() : x(0), y(0), z(0), w(1) {}
    Vector4(const T& x, const T& y, const T& z, const T& w) : x(x), y(y), z(z), w(w) {}
    Vector4(const Vector3<T>& v) : Vector4(v, 1) {} // implicit: an RGB colour serves wherever RGBA is asked
    Vector4(const Vector3<T>& v, const T& w) : x(v.x), y(v.y), z(v.z), w(w) {}

    Vector4 operator+(const Vector4& v) const { return {x + v.x, y + v.y, z + v.z, w + v.w}; }
    Vector4 operator-(const Vector4& v) const { return {x - v.x, y - v.y, z - v.z, w - v.w}; }
    Vector4 operator*(float value) const { return {x * value, y * value, z * value, w * value}; }

    T dot(const Vector4& v) const { return x * v.x + y * v.y + z * v.z + w * v.w; }

    /// Scales this vector to unit length; one of length zero has no direction and stays as it is.
    void normalise() {
        const T length = std::sqrt(dot(*this));
        if (length > 0) {
            *this = {x / length, y / length, z / length, w / length};
        }
    }
};

/// Red, green, blue and alpha, 0..1.
using Colour4 = Vector4<float>;
static_assert(sizeof(Colour4) == 4 * sizeof(float), "components are packed");
