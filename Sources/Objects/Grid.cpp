#include "Objects/Grid.h"

#include "Utils/MathUtils.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

static const Colour4 FRONT_COLOUR(1, 1, 1, 0.7f);

Grid::Grid(unsigned int numberPointsX, unsigned int numberPointsY, float step)
    : numberPointsX(numberPointsX),
      numberPointsY(numberPointsY),
      hadImpulsion(static_cast<std::size_t>(numberPointsX) * numberPointsY),
      colours(hadImpulsion.size(), gridColour) {
    assert(!hadImpulsion.empty());

    for (std::vector<std::uint32_t>& pics : picsSpectrum) {
        pics.reserve(POINTS_PER_BAND);
        for (unsigned int k = 0; k < POINTS_PER_BAND; ++k) {
            pics.push_back(static_cast<unsigned int>(std::rand()) % (numberPointsX * numberPointsY));
        }
    }

    points.reserve(hadImpulsion.size());
    for (unsigned int x = 0; x < numberPointsX; ++x) {
        for (unsigned int y = 0; y < numberPointsY; ++y) {
            points.emplace_back(Vector3f(static_cast<float>(x) * step, 0, static_cast<float>(y) * step),
                                gridColour);
        }
    }

    indices.reserve(4 * points.size());
    const auto addSegment = [this](unsigned int from, unsigned int to) {
        indices.push_back(from);
        indices.push_back(to);
    };
    for (unsigned int x = 0; x < numberPointsX; ++x) {
        for (unsigned int y = 0; y + 1 < numberPointsY; ++y) {
            addSegment(x * numberPointsY + y, x * numberPointsY + y + 1);
        }
    }
    for (unsigned int y = 0; y < numberPointsY; ++y) {
        for (unsigned int x = 0; x + 1 < numberPointsX; ++x) {
            addSegment(x * numberPointsY + y, (x + 1) * numberPointsY + y);
        }
    }
}

const std::vector<Point>& Grid::getPoints() const { return points; }

const std::vector<std::uint32_t>& Grid::getIndices() const { return indices; }

unsigned int Grid::getNumberPointsX() const { return numberPointsX; }

unsigned int Grid::getNumberPointsY() const { return numberPointsY; }

void Grid::setImpulsionValue(float newImpulsionValue) { impulsionValue = newImpulsionValue; }

void Grid::updateSpectrum(const float* spectrum, unsigned int /*precision*/) {
    for (unsigned int band = 0; band < BANDS; ++band) {
        const float magnitude = spectrum[band];
        const Colour4 restColour = colours[band];
        const Colour4 spikeColour = restColour * 0.6f;
        for (const std::uint32_t pic : picsSpectrum[band]) {
            Point& point = points[pic];
            float height = point.position.y;
            if (height > 0.4f) {
                height = static_cast<float>(height - 0.1);
            } else {
                height = 0;
                point.colour = restColour;
            }
            if (15 * magnitude > height) { // whatever the impulsion value
                height = impulsionValue * magnitude;
                point.colour = spikeColour;
            }
            point.position.y = height;
        }
    }
}

void Grid::makeImpulsion(unsigned int x, unsigned int y, const Colour4& colour, unsigned int impulsionStep,
                         unsigned int limit) {
    if (!holds(x, y) || impulsionStep >= limit) {
        return;
    }
    const std::size_t index = static_cast<std::size_t>(y) * numberPointsX + x;
    if (hadImpulsion[index] != 0 && hadImpulsion[index] <= impulsionStep) {
        return;
    }
    const unsigned int step = std::max(impulsionStep, 1U);
    hadImpulsion[index] = step;
    colours[index] = colour;
    makeImpulsion(x - 1, y, colour, step + 1, limit); // below zero it wraps, and is refused
    makeImpulsion(x + 1, y, colour, step + 1, limit);
    makeImpulsion(x, y + 1, colour, step + 1, limit);
    makeImpulsion(x, y - 1, colour, step + 1, limit);
    impulsionUpdateStep = 1;
}

void Grid::updateImpulsion() {
    if (impulsionUpdateStep == 0) {
        return;
    }
    bool anyMark = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        Colour4& colour = points[i].colour;
        const std::uint32_t mark = hadImpulsion[i];
        if (mark == impulsionUpdateStep) {
            colour = FRONT_COLOUR;
        } else if (mark < impulsionUpdateStep) {
            const Colour4 restColour = colours[i];
            const Colour4 faded = MathUtils::lerp(colour, restColour, 0.1f);
            const Colour4 excess = faded - gridColour;
            // One test instead of three: this is every point of the lattice, every frame.
            const bool arrived = std::max(std::max(excess.r, excess.g), excess.b) < 0.05f;
            colour = arrived ? restColour : faded;
            if (arrived && mark != 0) {
                hadImpulsion[i] = 0;
            }
        }
        anyMark = anyMark || hadImpulsion[i] != 0;
    }
    impulsionUpdateStep = anyMark ? impulsionUpdateStep + 1 : 0;
}

void Grid::makeElevation(unsigned int x, unsigned int y, float height, int displacement) {
    if (!holds(x, y) || height <= 0 || displacement > 5) {
        return;
    }
    float& elevation = points[static_cast<std::size_t>(y) * numberPointsX + x].position.y;
    if (elevation == 0) {
        elevation = height;
    }
    const float newElevation = height - static_cast<float>(displacement);
    makeElevation(x - 1, y, newElevation, displacement + 1);
    makeElevation(x, y - 1, newElevation, displacement + 1);
    makeElevation(x, y + 1, newElevation, displacement + 1);
    makeElevation(x + 1, y, newElevation, displacement + 1);
}

void Grid::clearColour() { paint(gridColour); }

void Grid::clearColour(const Colour3& colour) { paint(colour); }

void Grid::clearElevation() {
    for (Point& point : points) {
        point.position.y = 0;
    }
}

bool Grid::holds(unsigned int x, unsigned int y) const { return x < numberPointsX && y < numberPointsY; }

void Grid::paint(const Colour4& colour) {
    for (Point& point : points) {
        point.colour = colour;
    }
    std::fill(colours.begin(), colours.end(), colour);
}
