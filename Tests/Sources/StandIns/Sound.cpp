// The sound layer: what has no handle gets an error.

#include "StandIns/Stage.h"

namespace {
template <typename... Arguments>
FMOD_RESULT answer(const char* name, const void* handle, const Arguments&... arguments) {
    const bool works = stage.note(name, handle != nullptr, arguments...);
    const bool fails = ++stage.soundCalls == stage.failingSoundCall || !works;
    return fails ? FMOD_ERR_MEMORY : handle == nullptr ? FMOD_ERR_HANDLE : FMOD_OK;
}

/// Gives out a handle, if there is one.
template <typename Handle>
FMOD_RESULT open(FMOD_RESULT result, Handle** where) {
    static char something;
    *where = result == FMOD_OK ? reinterpret_cast<Handle*>(&something) : *where;
    return result;
}
} // namespace

extern "C" {
FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) { return open(answer(__func__, system), system); }
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int, FMOD_INITFLAGS, void*) {
    return answer(__func__, system);
}
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                     FMOD_CREATESOUNDEXINFO*, FMOD_SOUND** sound) {
    return open(answer(__func__, system, name, mode), sound);
}
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    return open(answer(__func__, system != nullptr ? sound : nullptr, channelid, paused), channel);
}
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) { return answer(__func__, system); }
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) { return answer(__func__, sound); }
FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND*, unsigned int*, FMOD_TIMEUNIT) { return FMOD_ERR_MEMORY; }
FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND*, char*, int) { return FMOD_ERR_MEMORY; }
FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL*) { return answer(__func__, channel); }
FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* c, FMOD_BOOL paused) { return answer(__func__, c, paused); }
FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* c, int count) { return answer(__func__, c, count); }
FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel) { return answer(__func__, channel); }
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues, int channeloffset,
                                     FMOD_DSP_FFT_WINDOW window) {
    stage.spectrum(spectrum);
    return answer(__func__, channel, numvalues, channeloffset, window);
}
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL*, unsigned int*, FMOD_TIMEUNIT) { return FMOD_ERR_MEMORY; }
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL*, unsigned int, FMOD_TIMEUNIT) { return FMOD_ERR_MEMORY; }
}
