#include "Music/Music.h"

#include <fmod_errors.h>

#include <iostream>

static const int MAX_CHANNELS = 10;
static const int NAME_SIZE = 50;
static const FMOD_MODE TRACK_MODE =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;

// Whether the call succeeded; says on standard error why not.
static bool succeeded(FMOD_RESULT result) {
    if (result == FMOD_OK) {
        return true;
    }
    std::cerr << FMOD_ErrorString(result) << std::endl;
    return false;
}

Music::Music() { std::cout << "Music created" << std::endl; }

Music::~Music() {
    FMOD_Sound_Release(sound);
    FMOD_System_Close(system);
    FMOD_System_Release(system);
    std::cout << "Music deleted" << std::endl;
}

bool Music::create() {
    return succeeded(FMOD_System_Create(&system)) &&
           succeeded(FMOD_System_Init(system, MAX_CHANNELS, FMOD_INIT_NORMAL, nullptr));
}

bool Music::loadFile(const std::string& filename) {
    FMOD_Sound_Release(sound);
    sound = nullptr;
    return succeeded(FMOD_System_CreateStream(system, filename.c_str(), TRACK_MODE, nullptr, &sound));
}

void Music::play() {
    FMOD_BOOL paused = 0;
    FMOD_Channel_GetPaused(channel, &paused);
    if (paused != 0) {
        FMOD_Channel_SetPaused(channel, 0);
        return;
    }
    FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel);
    FMOD_Channel_SetLoopCount(channel, -1);
}

void Music::pause() { FMOD_Channel_SetPaused(channel, 1); }

void Music::stop() { FMOD_Channel_Stop(channel); }

void Music::update() { FMOD_System_Update(system); }

void Music::getSpectrum(float* spectrum, unsigned int precision) {
    FMOD_Channel_GetSpectrum(channel, spectrum, static_cast<int>(precision), 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
}

unsigned int Music::getMsLength() const {
    unsigned int length = 0;
    succeeded(FMOD_Sound_GetLength(sound, &length, FMOD_TIMEUNIT_MS));
    return length;
}

unsigned int Music::getMsPosition() const {
    unsigned int position = 0;
    succeeded(FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS));
    return position;
}

void Music::setMsPosition(unsigned int newPosition) {
    succeeded(FMOD_Channel_SetPosition(channel, newPosition, FMOD_TIMEUNIT_MS));
}

char* Music::getName() const {
    auto* name = new char[NAME_SIZE]();
    if (!succeeded(FMOD_Sound_GetName(sound, name, NAME_SIZE))) {
        name[0] = 0;
    }
    return name;
}
