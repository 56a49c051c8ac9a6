#pragma once

#include "3D/ColouredArrays.h"
#include "Types/Vector4.h"

#include <GL/glew.h>

#include <cmath>
#include <cstdint>
#include <vector>

/// A fountain of coloured points: every update emits one on a curve around the start position, and those
/// alive sink and fade until they die, 202 updates after their birth. No chance is involved.
///
/// Variant, the class that derives from this, supplies the curve: POINT_SIZE in pixels, STEP, by which the
/// phase grows per update, and curve(c, o), the point of the phase c and the offset o, in radians.
template <typename Variant>
class Fountain {
public:
    /// OpenGL reads position and colour from an array of these.
    struct Particule {
        Vector3f position;
        Colour4 colour;
        bool living = false;
        std::uint32_t life = 0; ///< updates since birth
    };

    /// colour: RGBA, of which the new particles get 30 % and all of the alpha; nbParticules: the most that
    /// live at a time; offset: a phase that tells fountains at one place apart.
    Fountain(const Vector3f& startPosition, const Colour4& colour, unsigned int nbParticules, float offset)
        : particules(nbParticules),
          startPosition(startPosition),
          startColour(static_cast<float>(0.3 * colour.r), static_cast<float>(0.3 * colour.g),
                      static_cast<float>(0.3 * colour.b), colour.a),
          offset(offset) {}

    /// One step: age and bury, emit, move on along the curve.
    void update() {
        for (std::uint32_t i = 0; i < livingParticules; ++i) {
            Particule& particule = particules[i];
            if (particule.life > 200) {
                --livingParticules;
                particule = particules[livingParticules]; // ages from the next update on
            } else {
                ++particule.life;
                particule.position.y -= 0.002f;
                particule.colour.a -= 0.005f;
            }
        }
        if (livingParticules < particules.size()) {
            const Vector3f sway(std::sin(counter + offset), 0, 0);
            Particule& born = particules[livingParticules];
            born.position = startPosition + Variant::curve(counter, offset) + sway;
            born.colour = startColour;
            born.living = true;
            born.life = 0;
            ++livingParticules;
        }
        counter = static_cast<float>(counter + Variant::STEP);
    }

    /// Draws the living; blending is the caller's.
    void draw() const {
        const ColouredArrays arrays = ColouredArrays::of(particules.data());
        glPointSize(Variant::POINT_SIZE);
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(livingParticules));
    }

protected:
    std::vector<Particule> particules; ///< all that can live; the living come first
    Vector3f startPosition;
    Colour4 startColour;
    std::uint32_t livingParticules = 0;
    float counter = 0; ///< phase of the curve
    float offset;
};
