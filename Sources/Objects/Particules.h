#pragma once

#include "Objects/Fountain.h"

/// A ring, one unit up.
class Particules : public Fountain<Particules> {
public:
    static constexpr float POINT_SIZE = 4;
    static constexpr double STEP = 0.01;

    using Fountain::Fountain;

    static Vector3f curve(float c, float /*o*/) { return {std::sin(c), 1, std::cos(c)}; }
};
