#pragma once

#include "Objects/Grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <queue>
#include <vector>

/// What the lattice should look like, worked out point by point.
struct GridModel {
    struct Cell {
        float height = 0;
        Colour4 colour = gridColour, rest = gridColour;
        unsigned int mark = 0; ///< ring of the wave that holds it, 0: none
    };

    GridModel(unsigned int X, unsigned int Y) : X(X), Y(Y), cells(std::size_t(X) * Y) {
        for (auto& band : pics) {
            std::generate(band.begin(), band.end(), [&] { return std::rand() % (X * Y); });
        }
    }

    void spectrum(const float* magnitudes, float spike) {
        for (unsigned int band = 0; band < pics.size(); ++band) {
            for (const unsigned int pic : pics[band]) {
                Cell& cell = cells[pic];
                const bool sinks = cell.height > 0.4f;
                cell.height = sinks ? static_cast<float>(cell.height - 0.1) : 0;
                const bool lifted = 15 * magnitudes[band] > cell.height;
                cell.height = lifted ? spike * magnitudes[band] : cell.height;
                cell.colour = lifted ? cells[band].rest * 0.6f : sinks ? cell.colour : cells[band].rest;
            }
        }
    }

    /// Ring by ring; waves count x along z, from either edge of the same lattice.
    void impulsion(int x, int y, const Colour4& colour, unsigned int step, unsigned int limit) {
        std::queue<std::array<int, 3>> fronts({{x, y, static_cast<int>(step)}});
        for (; !fronts.empty(); fronts.pop()) {
            const auto [u, v, ring] = fronts.front();
            if (u < 0 || v < 0 || u >= static_cast<int>(X) || v >= static_cast<int>(Y) ||
                ring >= static_cast<int>(limit)) {
                continue;
            }
            Cell& cell = cells[v * X + u];
            if (cell.mark == 0 || static_cast<int>(cell.mark) > ring) {
                cell.mark = std::max(ring, 1);
                cell.rest = colour;
                clock = 1;
                for (const auto& [du, dv] : {std::pair(-1, 0), {1, 0}, {0, -1}, {0, 1}}) {
                    fronts.push({u + du, v + dv, std::max(ring, 1) + 1});
                }
            }
        }
    }

    void waves() {
        bool over = true;
        for (Cell& cell : cells) {
            Colour4& c = cell.colour;
            if (clock != 0 && cell.mark == clock) {
                c = Colour4(1, 1, 1, 0.7f);
            } else if (cell.mark < clock) {
                c = c * 0.9f + cell.rest * 0.1f;
                if (std::max({c.r, c.g, c.b}) - GREY < 0.05f) { // grey: one limit for all three
                    c = cell.rest;
                    cell.mark = 0;
                }
            }
            over = over && cell.mark == 0;
        }
        clock = over ? 0 : clock + 1;
    }

    void expectAlike(const Grid& grid) const {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Point& point = grid.getPoints()[i];
            const Colour4 miss = point.colour - cells[i].colour;
            ASSERT_LT(miss.dot(miss) + std::abs(point.position.y - cells[i].height), 1e-5) << i;
        }
    }

    static constexpr float GREY = 117 / 255.0f;

    unsigned int X, Y;
    std::vector<Cell> cells;
    std::array<std::array<unsigned int, 64>, 16> pics{};
    unsigned int clock = 0; ///< ring of the wave front, 0: no wave
};
