#pragma once

#include "GridModel.h"
#include "StandIns/Stage.h"

#include <cmath>
#include <utility>
#include <vector>

/// A fountain of the given kind, 1 to 5, in plain formulas.
struct FountainModel {
    int kind;
    std::size_t capacity;
    std::array<double, 3> start = {5, 2, 9};
    Colour4 colour = {0.3f, 0.24f, 0.15f, 0.9f}; ///< of the new points
    double offset = 0.7;
    float phase = 0;
    std::vector<std::pair<double, int>> living{}; ///< phases of their births and ages, in their places

    void update() {
        for (std::size_t i = 0; i < living.size(); ++i) {
            if (++living[i].second > 201) {
                living[i] = living.back(); // the newest takes the place, and is not aged this time
                living.pop_back();
            }
        }
        if (living.size() < capacity) {
            living.emplace_back(phase, 0);
        }
        phase = static_cast<float>(phase + (kind > 2 ? 0.03 : 0.01));
    }

    void expectDrawn(const Points& points) const {
        ASSERT_EQ(points.size(), living.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            const auto& [p, shade] = points[i];
            const auto& [c, age] = living[i];
            const double bob = kind == 1 ? 1 : std::cos(2 * c + offset) + 1;
            const double depth[] = {std::cos(c), std::cos(c) + c, std::cos(c),
                                    std::cos(c + offset) + offset + c, std::sin(c + offset) + offset + c};
            const double x = start[0] + std::sin(c) + (kind > 1 ? c : 0) + std::sin(c + offset);
            const double miss = std::abs(p.x - x) + std::abs(p.y - (start[1] + bob - 0.002 * age)) +
                                std::abs(p.z - (start[2] + depth[kind - 1]));
            ASSERT_LT(miss, 1e-3) << i;
            const float alpha = colour.a - 0.005f * static_cast<float>(age);
            ASSERT_LT(between(shade, {colour.r, colour.g, colour.b, alpha}), 1e-4) << i;
        }
    }
};
