#pragma once

#include <fmod.h>

#include <string>

/// The show's one track and its spectrum. What fails is reported on standard error, one line in the sound
/// layer's words, and the show goes on without it; operations that answer a bool say whether they succeeded.
class Music {
public:
    Music();
    /// Ends playback and releases track and sound system.
    ~Music();
    Music(const Music&) = delete;
    Music& operator=(const Music&) = delete;

    /// Starts the sound system. Once.
    bool create();
    /// Opens a track, an MP3 file, in place of the one before; what plays goes on playing. After a failure
    /// there is no track, and play starts nothing.
    bool loadFile(const std::string& filename);

    /// Resumes a paused track; otherwise starts the track from its beginning.
    void play();
    void pause();
    void stop();
    void update();

    /// Fills spectrum, which holds precision floats, with the linear magnitudes, 0..1, of what is heard now
    /// on the left, the lowest band first. precision is a power of two, 64 to 8192. All 0 when nothing is
    /// heard: before play, while paused, after the end, and after a failure, which is not reported.
    void getSpectrum(float* spectrum, unsigned int precision);

    /// Length of the open track in ms, 0 when unknown.
    unsigned int getMsLength() const;
    /// Playing position in ms, 0 when unknown.
    unsigned int getMsPosition() const;
    void setMsPosition(unsigned int newPosition);

    /// The track's name in UTF-8, cut to 49 bytes, empty when unknown, in an array of 50 for the caller to
    /// delete[].
    char* getName() const;

private:
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr; ///< the sound layer's own
};
