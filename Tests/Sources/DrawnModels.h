#pragma once

#include "GridModel.h"
#include "StandIns/Stage.h"

#include <cmath>
#include <deque>
#include <string>
#include <utility>
#include <vector>

/// Points where the model wants them, one distance for each coordinate, all of one colour.
inline void expectPoints(const Drawing& drawing, const std::vector<std::array<double, 3>>& wanted,
                         const Rgba& colour) {
    ASSERT_EQ(drawing.points.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto& [p, c] = drawing.points[i];
        const auto& [x, y, z] = wanted[i];
        ASSERT_LT(std::abs(p.x - x) + std::abs(p.y - y) + std::abs(p.z - z), 1e-3)
            << i << ": " << p.x << " " << p.y << " " << p.z << ", not " << x << " " << y << " " << z;
        ASSERT_LT(std::abs(c.r - colour[0]) + std::abs(c.g - colour[1]) + std::abs(c.b - colour[2]) +
                      std::abs(c.a - colour[3]),
                  1e-4);
    }
}

/// Words on the ground.
struct TextModel {
    std::array<double, 3> position;
    const char* text;
    double scale;
    bool turned = false; ///< towards larger z

    /// The letters are the next drawings, which it steps over.
    void expectDrawn(const Drawing*& pDrawing, const Rgba& colour) const {
        // The ends of the strokes of a to z, each a column from left to right and a row from top to foot.
        static const char* const STROKES[] = {"024082402161",
                                              "00028082008002820181",
                                              "000200800282",
                                              "0002007002727072",
                                              "0002008002820181",
                                              "020000800181",
                                              "80000002025252515131",
                                              "000280820181",
                                              "4042",
                                              "707272121211",
                                              "000201800182",
                                              "00020282",
                                              "0200004141808082",
                                              "020000828280",
                                              "0002028282808000",
                                              "0200008080818101",
                                              "02000080808282028241",
                                              "02000080808181010182",
                                              "02828281810101000080",
                                              "00804042",
                                              "000202828280",
                                              "00424280",
                                              "0002024141828280",
                                              "00820280",
                                              "004180414241",
                                              "028282000080"};
        static const double COLUMNS[] = {-0.5, -0.3, -0.25, -0.1, 0, 0.1, 0.25, 0.3, 0.5};
        for (std::size_t k = 0; text[k] != 0; ++k) {
            std::vector<std::array<double, 3>> ends;
            const int letter = std::tolower(text[k]) - 'a';
            for (const char* p = letter >= 0 ? STROKES[letter] : ""; *p != 0; p += 2) {
                const double along = scale * (1.5 * static_cast<double>(k) + COLUMNS[p[0] - '0']);
                const double down = scale * (p[1] - '0') / 2;
                ends.push_back({position[0] - (turned ? down : along), position[1],
                                position[2] + (turned ? along : -down)});
            }
            if (letter >= 0) {
                SCOPED_TRACE(text[k]);
                EXPECT_EQ(pDrawing->size, 8);
                ASSERT_NO_FATAL_FAILURE(expectPoints(*pDrawing++, ends, colour));
            }
        }
    }
};

/// A fountain of the given kind, 1 to 5.
struct FountainModel {
    int kind;
    std::array<double, 3> start;
    Rgba colour; ///< of the new points
    double offset;
    std::size_t capacity = 500;
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

    void expectDrawn(const Drawing& drawing) const {
        EXPECT_EQ(drawing.size, kind == 1 ? 4 : 3);
        std::vector<std::array<double, 3>> points;
        for (const auto& [c, age] : living) {
            const double bob = kind == 1 ? 1 : std::cos(2 * c + offset) + 1;
            const double depth[] = {std::cos(c), std::cos(c) + c, std::cos(c),
                                    std::cos(c + offset) + offset + c, std::sin(c + offset) + offset + c};
            points.push_back({start[0] + std::sin(c) + (kind > 1 ? c : 0) + std::sin(c + offset),
                              start[1] + bob - 0.002 * age, start[2] + depth[kind - 1]});
        }
        ASSERT_EQ(drawing.points.size(), points.size());
        for (std::size_t i = 0; i < points.size(); ++i) { // each of its age
            const Rgba faded = {colour[0], colour[1], colour[2],
                                colour[3] - 0.005f * static_cast<float>(living[i].second)};
            ASSERT_NO_FATAL_FAILURE(expectPoints({0, false, {drawing.points[i]}}, {points[i]}, faded)) << i;
        }
    }
};
