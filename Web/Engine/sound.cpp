// The sound layer as the show calls it. The page plays the track by itself; what the show asks for is the
// spectrum of the moment, which goes by the show's own clock: a frame hears what was audible in its 15 ms,
// however late it is run.

#include "Host.h"
#include "Spectrum.h"
#include "page.h"

#include <fmod.h>

#include <algorithm>
#include <map>

struct FMOD_SYSTEM {};
struct FMOD_SOUND {};
struct FMOD_CHANNEL {};

namespace {
FMOD_SYSTEM soundSystem;
FMOD_SOUND track;
FMOD_CHANNEL channel;

bool playing = false;
unsigned int startTime = 0; // ms
std::map<int, fmodex::Spectrum> spectra;

/// The sound frame that is heard now.
int heard() {
    const unsigned long long now = pageTrackStart() + host::Host::current().getTicks() - startTime;
    return static_cast<int>(now * pageTrackRate() / 1000);
}
} // namespace

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** created) {
    *created = &soundSystem;
    return FMOD_OK;
}
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM*, int, FMOD_INITFLAGS, void*) { return FMOD_OK; }
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM*, const char*, FMOD_MODE, FMOD_CREATESOUNDEXINFO*,
                                     FMOD_SOUND** sound) {
    if (pageTrackLength() == 0) {
        return FMOD_ERR_FILE_MISSING;
    }
    *sound = &track;
    return FMOD_OK;
}
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM*, FMOD_CHANNELINDEX, FMOD_SOUND* sound, FMOD_BOOL,
                                  FMOD_CHANNEL** played) {
    if (sound == nullptr) {
        return FMOD_ERR_HANDLE;
    }
    playing = true;
    startTime = host::Host::current().getTicks();
    *played = &channel;
    return FMOD_OK;
}
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL*, float* spectrum, int numvalues, int,
                                     FMOD_DSP_FFT_WINDOW) {
    const int now = heard();
    if (!playing || now >= static_cast<int>(pageTrackLength())) {
        std::fill_n(spectrum, numvalues, 0.0f);
        return FMOD_ERR_HANDLE;
    }
    fmodex::Spectrum& measured = spectra.try_emplace(numvalues, numvalues).first->second;
    std::vector<fmodex::Frame>& frames = measured.getFrames();
    pageCopyTrack(now - numvalues, static_cast<unsigned int>(frames.size()), &frames.data()->left);
    measured.measure(spectrum, pageTrackGain());
    return FMOD_OK;
}
FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL*) {
    playing = false;
    return FMOD_OK;
}

// Nothing to do or to tell: there is one track, and the page holds and releases it.
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM*) { return FMOD_OK; }
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM*) { return FMOD_OK; }
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM*) { return FMOD_OK; }
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND*) { return FMOD_OK; }
FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL*, int) { return FMOD_OK; }
FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL*, FMOD_BOOL*) { return FMOD_ERR_HANDLE; }
FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL*, FMOD_BOOL) { return FMOD_ERR_HANDLE; }

// The rest of the player's class, which the show does not use.
FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND*, unsigned int*, FMOD_TIMEUNIT) { return FMOD_ERR_HANDLE; }
FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND*, char*, int) { return FMOD_ERR_HANDLE; }
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL*, unsigned int*, FMOD_TIMEUNIT) { return FMOD_ERR_HANDLE; }
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL*, unsigned int, FMOD_TIMEUNIT) { return FMOD_ERR_HANDLE; }
