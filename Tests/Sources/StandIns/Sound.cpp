// The sound layer: what has no handle gets an error.

#include "StandIns/Stage.h"

#include <cstring>

namespace {
char something; // is what all handles lead to

/// A call, which is an event if it succeeds.
template <typename... Parts>
FMOD_RESULT call(const char* name, const void* handle, const Parts&... parts) {
    if (++stage.soundCalls == stage.failingSoundCall || !stage.works(name)) {
        return FMOD_ERR_MEMORY;
    }
    return handle == nullptr ? FMOD_ERR_HANDLE : (stage.note(name, parts...), FMOD_OK);
}

/// Gives out a value, if there is one.
template <typename T>
FMOD_RESULT give(FMOD_RESULT result, T* where, T value) {
    if (result == FMOD_OK) {
        *where = value;
    }
    return result;
}
template <typename Handle>
FMOD_RESULT open(FMOD_RESULT result, Handle** where) {
    return give(result, where, reinterpret_cast<Handle*>(&something));
}
} // namespace

extern "C" {
using System = FMOD_SYSTEM*;
using Sound = FMOD_SOUND*;
using Channel = FMOD_CHANNEL*;
using Result = FMOD_RESULT;
using Number = unsigned int;
Result FMOD_System_Create(System* s) { return open(call(__func__, s), s); }
Result FMOD_System_Init(System s, int channels, FMOD_INITFLAGS, void*) { return call(__func__, s, channels); }
Result FMOD_System_CreateStream(System s, const char* name, FMOD_MODE mode, FMOD_CREATESOUNDEXINFO*,
                                Sound* sound) {
    return open(call(__func__, s, name, mode), sound);
}
Result FMOD_System_PlaySound(System, FMOD_CHANNELINDEX, Sound sound, FMOD_BOOL, Channel* channel) {
    return open(call(__func__, sound), channel);
}
Result FMOD_System_Update(System s) { return call(__func__, s); }
Result FMOD_System_Close(System s) { return call(__func__, s); }
Result FMOD_System_Release(System s) { return call(__func__, s); }
Result FMOD_Sound_Release(Sound s) { return call(__func__, s); }
Result FMOD_Sound_GetLength(Sound s, Number* l, FMOD_TIMEUNIT) { return give(call(__func__, s), l, 9U); }
Result FMOD_Sound_GetName(Sound s, char* name, int namelength) {
    std::strncpy(name, "Quelar", namelength); // also when it fails
    return call(__func__, s);
}
Result FMOD_Channel_GetPaused(Channel c, FMOD_BOOL* p) { return give(call(__func__, c), p, stage.paused); }
Result FMOD_Channel_SetPaused(Channel c, FMOD_BOOL p) { return give(call(__func__, c), &stage.paused, p); }
Result FMOD_Channel_SetLoopCount(Channel c, int count) { return call(__func__, c, count); }
Result FMOD_Channel_Stop(Channel c) { return call(__func__, c); }
Result FMOD_Channel_GetSpectrum(Channel c, float* spectrum, int n, int channeloffset,
                                FMOD_DSP_FFT_WINDOW window) {
    stage.spectrum(spectrum);
    return call(__func__, c, n, channeloffset, window);
}
Result FMOD_Channel_GetPosition(Channel c, Number* p, FMOD_TIMEUNIT) {
    return give(call(__func__, c), p, 7U);
}
Result FMOD_Channel_SetPosition(Channel c, Number p, FMOD_TIMEUNIT) { return call(__func__, c, p); }
}
