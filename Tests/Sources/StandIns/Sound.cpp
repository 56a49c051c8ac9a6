// The sound layer: what has no handle gets an error. Handles are noted as 0 or 1.

#include "StandIns/Stage.h"

#include <cstring>

namespace {
template <typename... Arguments>
FMOD_RESULT answer(const char* name, const void* handle, const Arguments&... arguments) {
    const bool works = stage.note(name, handle != nullptr, arguments...);
    const bool fails = ++stage.soundCalls == stage.failingSoundCall || !works;
    return fails ? FMOD_ERR_MEMORY : handle == nullptr ? FMOD_ERR_HANDLE : FMOD_OK;
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
    static char something;
    return give(result, where, reinterpret_cast<Handle*>(&something));
}
} // namespace

extern "C" {
FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) { return open(answer(__func__, system), system); }
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int channels, FMOD_INITFLAGS flags, void* extra) {
    return answer(__func__, system, channels, flags, extra == nullptr);
}
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                     FMOD_CREATESOUNDEXINFO* info, FMOD_SOUND** sound) {
    return open(answer(__func__, system, name, mode, info == nullptr), sound);
}
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    return open(answer(__func__, system != nullptr ? sound : nullptr, channelid, paused), channel);
}
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) { return answer(__func__, sound); }
FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND* sound, unsigned int* length, FMOD_TIMEUNIT unit) {
    return give(answer(__func__, sound, unit), length, 103000U);
}
FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND* sound, char* name, int namelength) {
    std::memcpy(name, "Quelar", sizeof("Quelar")); // also when it fails
    return answer(__func__, sound, namelength);
}
FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL* paused) {
    return give(answer(__func__, channel), paused, stage.paused);
}
FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* channel, FMOD_BOOL paused) {
    return give(answer(__func__, channel, paused), &stage.paused, paused);
}
FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* c, int count) { return answer(__func__, c, count); }
FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel) { return answer(__func__, channel); }
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues, int channeloffset,
                                     FMOD_DSP_FFT_WINDOW window) {
    stage.spectrum(spectrum);
    return answer(__func__, channel, numvalues, channeloffset, window);
}
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT unit) {
    return give(answer(__func__, channel, unit), position, stage.position);
}
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT unit) {
    return give(answer(__func__, channel, unit), &stage.position, position);
}
}
