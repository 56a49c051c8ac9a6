#pragma once

#include "Objects/Grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <queue>
#include <vector>

const Colour4 GREY(117 / 255.0f, 117 / 255.0f, 117 / 255.0f, 0.7f);

/// How far two colours are apart, in all.
inline float between(const Colour4& c, const Colour4& d) {
    return std::abs(c.r - d.r) + std::abs(c.g - d.g) + std::abs(c.b - d.b) + std::abs(c.a - d.a);
}

/// What the lattice should look like, worked out point by point in plain numbers.
struct GridModel {
    struct Cell {
        float height = 0;
        Colour4 colour = GREY, rest = GREY;
        unsigned int mark = 0; ///< ring of the wave that holds it, 0: none
    };

    GridModel(unsigned int X, unsigned int Y, float step)
        : X(X), Y(Y), step(step), cells(std::size_t(X) * Y) {
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
                cell.colour = sinks ? cell.colour : cells[band].rest;
                if (15 * magnitudes[band] > cell.height) {
                    cell.height = spike * magnitudes[band];
                    cell.colour = cells[band].rest * 0.6f;
                }
            }
        }
    }

    /// Ring by ring; waves count x along z, from either edge of the same lattice.
    void impulsion(int x, int y, const Colour4& colour, unsigned int first, unsigned int limit) {
        std::queue<std::array<int, 3>> fronts({{x, y, static_cast<int>(first)}});
        for (; !fronts.empty(); fronts.pop()) {
            const auto [u, v, ring] = fronts.front();
            const bool inside = u >= 0 && v >= 0 && u < static_cast<int>(X) && v < static_cast<int>(Y);
            Cell* pCell = inside && ring < static_cast<int>(limit) ? &cells[v * X + u] : nullptr;
            if (pCell != nullptr && (pCell->mark == 0 || static_cast<int>(pCell->mark) > ring)) {
                pCell->mark = std::max(ring, 1);
                pCell->rest = colour;
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
            if (clock != 0 && cell.mark == clock) {
                cell.colour = {1, 1, 1, 0.7f};
            } else if (cell.mark < clock) {
                cell.colour = cell.colour * 0.9f + cell.rest * 0.1f;
                // Grey: one limit for all three.
                if (std::max({cell.colour.r, cell.colour.g, cell.colour.b}) - GREY.r < 0.05f) {
                    cell.colour = cell.rest;
                    cell.mark = 0;
                }
            }
            over = over && cell.mark == 0;
        }
        clock = over ? 0 : clock + 1;
    }

    void paint(const Colour4& colour) {
        std::for_each(cells.begin(), cells.end(), [&](Cell& cell) { cell.colour = cell.rest = colour; });
    }
    void level() {
        std::for_each(cells.begin(), cells.end(), [](Cell& cell) { cell.height = 0; });
    }

    void expectAlike(const Grid& grid) const {
        ASSERT_EQ(grid.getPoints().size(), cells.size());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const auto& [at, colour] = grid.getPoints()[i];
            const std::size_t row = i / Y; // along x
            const Vector3f wanted(static_cast<float>(row) * step, cells[i].height,
                                  static_cast<float>(i % Y) * step);
            const Vector3f miss = at - wanted;
            ASSERT_LT(miss.dot(miss), 1e-8) << i;
            ASSERT_LT(between(colour, cells[i].colour), 1e-4) << i;
        }
    }

    unsigned int X, Y;
    float step;
    std::vector<Cell> cells;
    std::array<std::array<unsigned int, 64>, 16> pics{};
    unsigned int clock = 0; ///< ring of the wave front, 0: no wave
};
