// The sound layer: handles are numbers, and what has none gets an error.

#include <cstring>

#include "StandIns/Stage.h"

namespace {
std::uintptr_t lastHandle = 0;

template <typename Handle, typename... Arguments>
FMOD_RESULT answer(const char* name, const Handle* handle, const Arguments&... arguments) {
    stage().record(name, reinterpret_cast<std::uintptr_t>(handle), arguments...);
    const bool fails = ++stage().soundCalls == stage().failingSoundCall || stage().fails(name);
    return fails ? FMOD_ERR_MEMORY : handle == nullptr ? FMOD_ERR_HANDLE : FMOD_OK;
}

/// Writes a result, if there is one.
template <typename T>
FMOD_RESULT with(FMOD_RESULT result, T* where, T value) {
    if (result == FMOD_OK) {
        *where = value;
    }
    return result;
}

template <typename Handle>
Handle* newHandle() {
    return reinterpret_cast<Handle*>(++lastHandle); // NOLINT(performance-no-int-to-ptr)
}
} // namespace

extern "C" {
FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    lastHandle = 0;
    return with(answer("FMOD_System_Create", reinterpret_cast<const char*>(1)), system,
                newHandle<FMOD_SYSTEM>());
}
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int channels, FMOD_INITFLAGS flags, void* extra) {
    return answer("FMOD_System_Init", system, channels, flags, extra != nullptr);
}
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                     FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound) {
    return with(answer("FMOD_System_CreateStream", system, name, mode, exinfo != nullptr), sound,
                newHandle<FMOD_SOUND>());
}
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    const FMOD_RESULT result =
        answer("FMOD_System_PlaySound", system, channelid, reinterpret_cast<std::uintptr_t>(sound), paused);
    return with(sound != nullptr ? result : FMOD_ERR_HANDLE, channel, newHandle<FMOD_CHANNEL>());
}
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) { return answer("FMOD_System_Update", system); }
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) { return answer("FMOD_System_Close", system); }
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) { return answer("FMOD_System_Release", system); }
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) { return answer("FMOD_Sound_Release", sound); }
FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND* sound, unsigned int* length, FMOD_TIMEUNIT unit) {
    return with(answer("FMOD_Sound_GetLength", sound, unit), length, 103000U);
}
FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND* sound, char* name, int namelength) {
    const FMOD_RESULT result = answer("FMOD_Sound_GetName", sound, namelength);
    std::strncpy(name, "Quelar", namelength); // the worst of layers writes also when it fails
    return result;
}
FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL* paused) {
    return with(answer("FMOD_Channel_GetPaused", channel), paused, stage().paused);
}
FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* channel, FMOD_BOOL paused) {
    stage().paused = paused;
    return answer("FMOD_Channel_SetPaused", channel, paused);
}
FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* channel, int count) {
    return answer("FMOD_Channel_SetLoopCount", channel, count);
}
FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel) { return answer("FMOD_Channel_Stop", channel); }
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues, int channeloffset,
                                     FMOD_DSP_FFT_WINDOW window) {
    const FMOD_RESULT result = answer("FMOD_Channel_GetSpectrum", channel, numvalues, channeloffset, window);
    if (result == FMOD_OK) {
        stage().spectrum(spectrum);
    }
    return result;
}
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT unit) {
    return with(answer("FMOD_Channel_GetPosition", channel, unit), position, 4200U);
}
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT unit) {
    return answer("FMOD_Channel_SetPosition", channel, position, unit);
}
}
