#pragma once

#include "3D/LineRenderer.h"

#include <array>
#include <cstdint>
#include <vector>

/// The rest colour of the lattice: a mid grey at 70 % opacity.
inline const Colour4 gridColour(117 / 255.0f, 117 / 255.0f, 117 / 255.0f, 0.7f);

/// The lattice of lines on the ground (the x-z plane), which carries what the music does to it from one scene
/// to the next: spikes, lifted by sixteen bands of the spectrum, and waves of colour that run out ring by
/// ring.
///
/// Heights are world units. The lattice's own (x, y) is column and row: x along world x, y along world z.
/// That of waves and mounds is turned: their x runs along world z, their y along world x. Their bounds are
/// not turned with them (x below numberPointsX, y below numberPointsY), and rows are numberPointsX long: on a
/// lattice that is not square their neighbours are no neighbours on the ground. Colours are RGBA, 0..1.
class Grid {
public:
    /// numberPointsX by numberPointsY points, at least one of them, step world units apart, from the origin
    /// into positive x and z. Draws 1024 random numbers: the 64 points of each band.
    Grid(unsigned int numberPointsX, unsigned int numberPointsY, float step);

    /// For drawing: the points, and the index pairs of the segments between neighbours.
    const std::vector<Point>& getPoints() const;
    const std::vector<std::uint32_t>& getIndices() const;
    unsigned int getNumberPointsX() const;
    unsigned int getNumberPointsY() const;

    /// Height of a spike per unit of magnitude.
    void setImpulsionValue(float newImpulsionValue);
    /// One step of the spikes: they sink, and those of a band that is louder than they are high rise anew.
    /// Reads the first sixteen magnitudes.
    void updateSpectrum(const float* spectrum, unsigned int precision);

    /// Starts a wave at (x, y), or extends the one that runs: ring after ring, from step impulsionStep (1 is
    /// the centre) to the one before limit. Points outside the lattice, and points that a wave reaches no
    /// later, stop it. The colour becomes the rest colour of its points. Every wave that starts restarts the
    /// front.
    void makeImpulsion(unsigned int x, unsigned int y, const Colour4& colour, unsigned int impulsionStep,
                       unsigned int limit);
    /// One step of the waves: the front flashes white and moves on, behind it points fade to their rest
    /// colour.
    void updateImpulsion();

    /// Raises the points at rest around (x, y) to a mound; the recursion starts with displacement 0.
    void makeElevation(unsigned int x, unsigned int y, float height, int displacement);

    /// Every point to the lattice's own colour or the given one, now and at rest. Waves keep their marks.
    void clearColour();
    void clearColour(const Colour3& colour);
    /// Every height to 0.
    void clearElevation();

private:
    static constexpr unsigned int BANDS = 16;
    static constexpr unsigned int POINTS_PER_BAND = 64;

    /// Whether the turned address (x, y) lies on the lattice.
    bool holds(unsigned int x, unsigned int y) const;
    void paint(const Colour4& colour);

    std::uint32_t numberPointsX;
    std::uint32_t numberPointsY;
    std::vector<Point> points;
    std::vector<std::uint32_t> indices;
    std::vector<std::uint32_t>
        hadImpulsion;                      ///< per point, the step at which the front reaches it; 0: no wave
    std::uint32_t impulsionUpdateStep = 0; ///< step of the front; 0: no wave runs
    std::vector<Colour4> colours;          ///< per point, the colour it returns to
    std::array<std::vector<std::uint32_t>, BANDS> picsSpectrum; ///< per band, the points it lifts
    float impulsionValue = 15;
};
