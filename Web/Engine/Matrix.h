#pragma once

#include <array>
#include <cmath>

namespace web {

/// A transform of homogeneous coordinates, column by column as OpenGL keeps it.
struct Matrix {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static Matrix translation(float x, float y, float z) {
        Matrix result;
        result.m[12] = x;
        result.m[13] = y;
        result.m[14] = z;
        return result;
    }

    static Matrix scaling(float x, float y, float z) {
        Matrix result;
        result.m[0] = x;
        result.m[5] = y;
        result.m[10] = z;
        return result;
    }

    /// About an axis through the origin, of any length but 0; degrees.
    static Matrix rotation(float angle, float x, float y, float z) {
        const float length = std::sqrt(x * x + y * y + z * z);
        x /= length;
        y /= length;
        z /= length;
        const float radians = angle * 3.14159265f / 180;
        const float c = std::cos(radians);
        const float s = std::sin(radians);
        const float d = 1 - c;
        Matrix result;
        result.m = {x * x * d + c,
                    x * y * d + z * s,
                    x * z * d - y * s,
                    0,
                    x * y * d - z * s,
                    y * y * d + c,
                    y * z * d + x * s,
                    0,
                    x * z * d + y * s,
                    y * z * d - x * s,
                    z * z * d + c,
                    0,
                    0,
                    0,
                    0,
                    1};
        return result;
    }

    friend Matrix operator*(const Matrix& left, const Matrix& right) {
        Matrix result;
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row) {
                float sum = 0;
                for (int i = 0; i < 4; ++i) {
                    sum += left.m[4 * i + row] * right.m[4 * column + i];
                }
                result.m[4 * column + row] = sum;
            }
        }
        return result;
    }

    friend bool operator==(const Matrix& left, const Matrix& right) { return left.m == right.m; }
};

} // namespace web
