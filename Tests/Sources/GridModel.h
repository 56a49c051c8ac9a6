#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <queue>
#include <vector>

#include <gtest/gtest.h>

#include "Objects/Grid.h"

/// What the lattice should look like, worked out point by point: world x along the first index, world z along
/// the second.
struct GridModel {
    struct Cell {
        float height = 0;
        Colour4 colour, rest;
        unsigned int mark = 0; ///< ring of the wave that holds it, 0: none
    };

    GridModel(unsigned int X, unsigned int Y) : X(X), Y(Y), cells(std::size_t(X) * Y) {
        clearColour(GREY);
        for (auto& band : pics) {
            std::generate(band.begin(), band.end(), [&] { return std::rand() % (X * Y); });
        }
    }

    void clearColour(const Colour4& colour) {
        for (Cell& cell : cells) {
            cell.colour = cell.rest = colour;
        }
    }
    void clearElevation() {
        for (Cell& cell : cells) {
            cell.height = 0;
        }
    }

    void spectrum(const float* magnitudes, float spike) {
        for (unsigned int band = 0; band < pics.size(); ++band) {
            for (const unsigned int pic : pics[band]) {
                const bool sinks = cells[pic].height > 0.4f;
                cells[pic].height = sinks ? static_cast<float>(cells[pic].height - 0.1) : 0;
                const bool lifted = 15 * magnitudes[band] > cells[pic].height;
                if (lifted) {
                    cells[pic].height = spike * magnitudes[band];
                }
                if (lifted || !sinks) {
                    cells[pic].colour = cells[band].rest * (lifted ? 0.6f : 1);
                }
            }
        }
    }

    /// Ring by ring; waves count x along z, from either edge of the same lattice.
    void impulsion(unsigned int x, unsigned int y, const Colour4& colour, unsigned int step,
                   unsigned int limit) {
        struct Front {
            int x, y;
            unsigned int step;
        };
        std::queue<Front> fronts({{static_cast<int>(x), static_cast<int>(y), step}});
        for (; !fronts.empty(); fronts.pop()) {
            const Front f = fronts.front();
            if (f.x < 0 || f.y < 0 || f.x >= static_cast<int>(X) || f.y >= static_cast<int>(Y) ||
                f.step >= limit) {
                continue;
            }
            Cell& cell = cells[f.y * X + f.x];
            if (cell.mark == 0 || cell.mark > f.step) {
                const unsigned int ring = std::max(f.step, 1U);
                cell.mark = ring;
                cell.rest = colour;
                clock = 1;
                for (const int d : {-1, 1}) {
                    fronts.push({f.x + d, f.y, ring + 1});
                    fronts.push({f.x, f.y + d, ring + 1});
                }
            }
        }
    }

    void waves() {
        if (clock == 0) {
            return;
        }
        for (Cell& cell : cells) {
            Colour4& c = cell.colour;
            if (cell.mark == clock) {
                c = Colour4(1, 1, 1, 0.7f);
            } else if (cell.mark < clock) {
                c = c * 0.9f + cell.rest * 0.1f;
                if (std::max({c.r, c.g, c.b}) - GREY.r < 0.05f) { // grey: one limit for all three
                    c = cell.rest;
                    cell.mark = 0;
                }
            }
        }
        const bool over =
            std::all_of(cells.begin(), cells.end(), [](const Cell& cell) { return cell.mark == 0; });
        clock = over ? 0 : clock + 1;
    }

    inline static const Colour4 GREY = Colour4(117 / 255.0f, 117 / 255.0f, 117 / 255.0f, 0.7f);

    unsigned int X, Y;
    std::vector<Cell> cells;
    std::array<std::array<unsigned int, 64>, 16> pics{};
    unsigned int clock = 0; ///< ring of the wave front, 0: no wave
};

/// Expects a lattice to look as the model says.
inline void expectAlike(const Grid& grid, const GridModel& model) {
    for (std::size_t i = 0; i < model.cells.size(); ++i) {
        const Point& point = grid.getPoints()[i];
        const GridModel::Cell& cell = model.cells[i];
        const Colour4 difference = point.colour - cell.colour;
        ASSERT_NEAR(point.position.y, cell.height, 1e-5) << i;
        ASSERT_LT(difference.dot(difference), 1e-9) << i;
    }
}
