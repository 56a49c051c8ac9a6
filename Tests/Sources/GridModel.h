#pragma once

#include "Objects/Grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <queue>
#include <vector>

using Rgba = std::array<float, 4>;
const Rgba GREY = {117 / 255.0f, 117 / 255.0f, 117 / 255.0f, 0.7f};

/// What the lattice should look like, worked out point by point in plain numbers.
struct GridModel {
    struct Cell {
        float height = 0;
        Rgba colour = GREY, rest = GREY;
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
                    for (int i = 0; i < 4; ++i) {
                        cell.colour[i] = cells[band].rest[i] * 0.6f;
                    }
                }
            }
        }
    }

    /// Ring by ring; waves count x along z, from either edge of the same lattice.
    void impulsion(int x, int y, const Rgba& colour, unsigned int first, unsigned int limit) {
        std::queue<std::array<int, 3>> fronts({{x, y, static_cast<int>(first)}});
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
            if (clock != 0 && cell.mark == clock) {
                cell.colour = {1, 1, 1, 0.7f};
            } else if (cell.mark < clock) {
                for (int i = 0; i < 4; ++i) {
                    cell.colour[i] = cell.colour[i] * 0.9f + cell.rest[i] * 0.1f;
                }
                // Grey: one limit for all three.
                if (*std::max_element(cell.colour.begin(), cell.colour.end() - 1) - GREY[0] < 0.05f) {
                    cell.colour = cell.rest;
                    cell.mark = 0;
                }
            }
            over = over && cell.mark == 0;
        }
        clock = over ? 0 : clock + 1;
    }

    void paint(const Rgba& colour) {
        for (Cell& cell : cells) {
            cell.colour = cell.rest = colour;
        }
    }
    void level() {
        for (Cell& cell : cells) {
            cell.height = 0;
        }
    }

    void expectAlike(const Grid& grid) const {
        ASSERT_EQ(grid.getPoints().size(), cells.size());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const auto& [at, c] = grid.getPoints()[i];
            const auto& [height, colour, rest, mark] = cells[i];
            const std::size_t row = i / Y; // along x
            float miss = std::abs(at.x - static_cast<float>(row) * step) + std::abs(at.y - height) +
                         std::abs(at.z - static_cast<float>(i - row * Y) * step);
            miss += std::abs(c.r - colour[0]) + std::abs(c.g - colour[1]) + std::abs(c.b - colour[2]);
            ASSERT_LT(miss + std::abs(c.a - colour[3]), 1e-4) << i;
        }
    }

    unsigned int X, Y;
    float step;
    std::vector<Cell> cells;
    std::array<std::array<unsigned int, 64>, 16> pics{};
    unsigned int clock = 0; ///< ring of the wave front, 0: no wave
};
