#pragma once

#include "Objects/Fountain.h"

/// A loop that bobs and drifts along x.
class Particules3 : public Fountain<Particules3> {
public:
    static constexpr float POINT_SIZE = 3;
    static constexpr double STEP = 0.03;

    using Fountain::Fountain;

    static Vector3f curve(float c, float o) {
        return {std::sin(c) + c, std::cos(c + c + o) + 1, std::cos(c)};
    }
};
