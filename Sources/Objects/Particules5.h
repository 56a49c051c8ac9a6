#pragma once

#include "Objects/Fountain.h"

/// As Particules4, a quarter turn later along z.
class Particules5 : public Fountain<Particules5> {
public:
    static constexpr float POINT_SIZE = 3;
    static constexpr double STEP = 0.03;

    using Fountain::Fountain;

    static Vector3f curve(float c, float o) {
        return {std::sin(c) + c, std::cos(c + c + o) + 1, std::sin(c + o) + o + c};
    }
};
