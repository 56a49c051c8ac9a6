#pragma once

/// Angles and interpolation.
class MathUtils {
public:
    /// Degrees to radians, multiplied in double precision.
    static float degToRan(float angle) {
        const double pi180 = 3.14159265 / 180;
        return static_cast<float>(angle * pi180);
    }

    /// From t1 (t = 0) to t2 (t = 1), and beyond either for t outside 0..1.
    template <typename T>
    static T lerp(T t1, T t2, float t) {
        const T end = t2 * t;
        const T start = t1 * (1 - t);
        return start + end;
    }
};
