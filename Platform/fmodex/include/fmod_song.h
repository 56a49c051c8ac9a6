// A song in memory, in place of the track.
#ifndef FMOD_SONG_H
#define FMOD_SONG_H

// This header is C as well as C++.
// NOLINTBEGIN(modernize-use-using,modernize-redundant-void-arg)

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef struct FMOD_SONG {
    const short* frames; ///< left and right by turns
    long long count;     ///< of frames
    int rate;            ///< frames per second
    float gain;          ///< of what the spectrum sees; what is heard stays as it is
    unsigned int start;  ///< ms into the song, where it begins to play
} FMOD_SONG;

/// Has a song play in place of whatever file is asked for, until null is set. Its samples stay the caller's,
/// and must stay. With a supplied clock every playing begins at its start.
///
/// In real time its first playing does, and then it sounds on by itself, whether the show stops and releases
/// what it has or not, to its last frame or until null is set: when the show plays again, it joins in where
/// the song is by then.
void FMOD_Song_Set(const FMOD_SONG* song);

/// Whether the song that is set has been heard to its end: 0 or 1.
int FMOD_Song_IsOver(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-use-using,modernize-redundant-void-arg)
#endif
