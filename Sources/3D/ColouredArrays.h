#pragma once

#include "Types/Vector4.h"

#include <GL/glew.h>

/// For as long as it lives, OpenGL draws from records in client memory that hold a position and a colour.
class ColouredArrays {
public:
    /// The first record's position and colour, null if there is none; stride in bytes, the size of a record.
    ColouredArrays(const Vector3f* position, const Colour4* colour, GLsizei stride) {
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        glVertexPointer(3, GL_FLOAT, stride, position);
        glColorPointer(4, GL_FLOAT, stride, colour);
    }
    ~ColouredArrays() {
        glDisableClientState(GL_COLOR_ARRAY);
        glDisableClientState(GL_VERTEX_ARRAY);
    }
    ColouredArrays(const ColouredArrays&) = delete;
    ColouredArrays& operator=(const ColouredArrays&) = delete;

    /// All records of a pool, each a structure with the members position and colour.
    template <typename Record>
    static ColouredArrays of(const Record* first) {
        return {first != nullptr ? &first->position : nullptr, first != nullptr ? &first->colour : nullptr,
                sizeof(Record)};
    }
};
