#include "checkTrack.h"

#include <fmod_clock.h>
#include <fmod_errors.h>

#include <stdexcept>

namespace recorder {

std::string faultOfTrack(const std::string& file) {
    // With a clock of its own the sound layer leaves the device alone.
    FMOD_Clock_Set([] { return 0ULL; });
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_System_Create(&system);
    FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr);
    const FMOD_RESULT result = FMOD_System_CreateStream(system, file.c_str(), FMOD_LOOP_OFF, nullptr, &sound);
    FMOD_System_Release(system);
    FMOD_Clock_Set(nullptr);
    return result == FMOD_OK ? "" : FMOD_ErrorString(result);
}

void checkTrack(const std::string& file) {
    const std::string fault = file.empty() ? "" : faultOfTrack(file);
    if (!fault.empty()) {
        throw std::runtime_error(file + ": " + fault);
    }
}

} // namespace recorder
