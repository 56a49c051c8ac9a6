#pragma once

#include <fmod.h>

#include <string>

/// The show's one track and its spectrum. What fails is reported on standard error in the sound layer's
/// words, and the show goes on without it.
class Music {
public:
    Music();
    /// Ends playback and releases track and sound system.
    ~Music();
    Music(const Music&) = delete;
    Music& operator=(const Music&) = delete;

    /// Starts the sound system.
    bool create();
    /// Opens a track in place of the one before; what plays goes on playing.
    bool loadFile(const std::string& filename);

    /// Resumes a paused track; otherwise starts the track from its beginning.
    void play();
    void pause();
    void stop();
    void update();

    /// Fills spectrum with precision linear magnitudes, 0..1, of what is heard now on the left, the lowest
    /// band first. precision is a power of two.
    void getSpectrum(float* spectrum, unsigned int precision);

    /// Length of the open track in ms, 0 when unknown.
    unsigned int getMsLength() const;
    /// Playing position in ms, 0 when unknown.
    unsigned int getMsPosition() const;
    void setMsPosition(unsigned int newPosition);

    /// The track's name, cut to 49 characters, empty when unknown; for the caller to delete[].
    char* getName() const;

private:
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr; ///< the sound layer's own
};
