#pragma once

#include "Objects/Fountain.h"

/// A loop that bobs and drifts along the diagonal, set apart along z by the offset.
class Particules4 : public Fountain<Particules4> {
public:
    static constexpr float POINT_SIZE = 3;
    static constexpr double STEP = 0.03;

    using Fountain::Fountain;

    static Vector3f curve(float c, float o) {
        return {std::sin(c) + c, std::cos(c + c + o) + 1, std::cos(c + o) + o + c};
    }
};
