// The sound layer: what has no handle gets an error, and so does the call whose turn it is to fail.

#include "StandIns/Stage.h"

#include <cstring>

namespace {
char something; // is what all handles lead to

/// A call, which is an event if it succeeds.
template <typename... Parts>
FMOD_RESULT call(const char* name, const void* handle, const Parts&... parts) {
    if (++stage.soundCalls == stage.failingSoundCall) {
        return FMOD_ERR_MEMORY;
    }
    return handle == nullptr ? FMOD_ERR_HANDLE : (stage.note(name, parts...), FMOD_OK);
}

/// Gives out a handle, if the call succeeded.
template <typename Handle>
FMOD_RESULT open(FMOD_RESULT result, Handle** where) {
    *where = result == FMOD_OK ? reinterpret_cast<Handle*>(&something) : *where;
    return result;
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
Result FMOD_Sound_GetLength(Sound, Number* length, FMOD_TIMEUNIT) { return *length = 9, FMOD_OK; }
Result FMOD_Sound_GetName(Sound, char* name, int n) { return std::strncpy(name, "Quelar", n), FMOD_OK; }
Result FMOD_Channel_GetPaused(Channel c, FMOD_BOOL* p) { return *p = stage.paused, call(__func__, c); }
Result FMOD_Channel_SetPaused(Channel c, FMOD_BOOL p) { return call(__func__, c, stage.paused = p); }
Result FMOD_Channel_SetLoopCount(Channel c, int count) { return call(__func__, c, count); }
Result FMOD_Channel_Stop(Channel c) { return call(__func__, c); }
Result FMOD_Channel_GetSpectrum(Channel c, float* spectrum, int n, int offset, FMOD_DSP_FFT_WINDOW window) {
    std::copy(stage.spectrum.begin(), stage.spectrum.end(), spectrum);
    return call(__func__, c, n, offset, window);
}
Result FMOD_Channel_GetPosition(Channel, Number* p, FMOD_TIMEUNIT) { return *p = 8, FMOD_OK; }
Result FMOD_Channel_SetPosition(Channel c, Number p, FMOD_TIMEUNIT) { return call(__func__, c, p); }
}
