#pragma once

#include "Scenes/FilmedScene.h"

#include <GL/glew.h>

/// A filmed scene with fountains in the six colours of the show, whose frame pulses on the bass.
class FountainScene : public FilmedScene {
protected:
    static constexpr std::size_t CLUSTER = 6; ///< fountains at one place
    static constexpr float LOUD = 0.2f;       ///< magnitude above which a band fires waves into the grid

    using Offsets = std::array<float, CLUSTER>;

    static const std::array<Colour4, CLUSTER> PALETTE;
    static const Offsets OFFSETS; ///< phases of the fountains of a cluster, in radians

    /// Adds one fountain. colour: its number in PALETTE; offset: its phase, in radians.
    template <typename Particules>
    static void addFountain(std::vector<Particules*>& parts, const Vector3f& position, std::size_t colour,
                            float offset) {
        parts.push_back(new Particules(position, PALETTE[colour], CAPACITY, offset));
    }

    /// Adds a cluster of fountains, one of each colour, each a hundredth of a unit below the one before.
    template <typename Particules>
    static void addCluster(std::vector<Particules*>& parts, const Vector3f& position,
                           const Offsets& offsets = OFFSETS) {
        for (std::size_t k = 0; k < CLUSTER; ++k) {
            const auto height = static_cast<float>(position.y - 0.01 * static_cast<double>(k));
            addFountain(parts, {position.x, height, position.z}, k, offsets[k]);
        }
    }

    /// Draws lists of fountains, their light added to what is there.
    template <typename... Lists>
    static void drawFountains(const Lists&... lists) {
        glDisable(GL_DEPTH_TEST);
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
        (drawAll(lists), ...);
        glDisable(GL_BLEND);
        glEnable(GL_DEPTH_TEST);
    }

    // One step of a list of objects, all of them drawn, or their end.
    template <typename Object>
    static void updateAll(const std::vector<Object*>& objects) {
        for (Object* pObject : objects) {
            pObject->update();
        }
    }
    template <typename Object>
    static void drawAll(const std::vector<Object*>& objects) {
        for (const Object* pObject : objects) {
            pObject->draw();
        }
    }
    template <typename Object>
    static void deleteAll(const std::vector<Object*>& objects) {
        for (const Object* pObject : objects) {
            delete pObject;
        }
    }

    /// Plays the current flight, as playMove does, and fades in and out over it. startTime: ms on the engine
    /// clock from where it fades; each flight that ends, the last one too, moves it on by the time that the
    /// flight should have lasted, so that the fades run ahead of the cameras by a frame or two.
    bool playFlight(std::uint32_t& startTime, unsigned int time);

private:
    static const unsigned int CAPACITY = 500; ///< of a fountain, more than ever live
};

/// The same with a list of fountains of one kind, its own.
template <typename Particules>
class FountainsScene : public FountainScene {
public:
    ~FountainsScene() override { deleteAll(parts); }

protected:
    std::vector<Particules*> parts;
};
