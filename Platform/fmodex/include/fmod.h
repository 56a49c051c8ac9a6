// The sound of the show: plays its track and tells what is heard at this moment.
//
// There is one system at a time, with one sound, which plays on one channel: whatever played or was open
// before ends with the next one. Every operation returns FMOD_OK or the reason why it did nothing;
// fmod_errors.h puts that into words. A handle that is null, released or over is always answered with
// FMOD_ERR_HANDLE. All operations are called from one thread.
//
// Times are in milliseconds. The sound layer runs by itself: nothing has to be called regularly.
#ifndef FMOD_H
#define FMOD_H

// This header is C as well as C++.
// NOLINTBEGIN(modernize-use-using,modernize-redundant-void-arg)

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/// Handles. They are numbers: nothing stands behind them, and none is handed out twice.
typedef struct FMOD_SYSTEM FMOD_SYSTEM;
typedef struct FMOD_SOUND FMOD_SOUND;
typedef struct FMOD_CHANNEL FMOD_CHANNEL;

/// Further wishes for opening a sound. There are none: always pass a null pointer.
typedef struct FMOD_CREATESOUNDEXINFO FMOD_CREATESOUNDEXINFO;

/// 0 is no, anything else yes; answers are 0 or 1.
typedef int FMOD_BOOL;

typedef enum FMOD_RESULT {
    FMOD_OK = 0,
    FMOD_ERR_HANDLE,          ///< null, foreign, released, or a channel that has stopped or come to its end
    FMOD_ERR_ARGUMENT,        ///< the number of values of a spectrum is out of range
    FMOD_ERR_NOT_INITIALISED, ///< the system has not been initialised, or was closed
    FMOD_ERR_INITIALISED,     ///< there is a system already, or it has been initialised
    FMOD_ERR_MEMORY,          ///< out of memory
    FMOD_ERR_FILE_MISSING,    ///< no file of that name
    FMOD_ERR_FILE_UNREADABLE, ///< it is there, but may not or cannot be read
    FMOD_ERR_FILE_FOLDER,     ///< it is a folder
    FMOD_ERR_FILE_EMPTY,      ///< it has no bytes
    FMOD_ERR_FILE_NOT_MP3,    ///< it has bytes, but no MP3 sound where a track begins
    FMOD_RESULT_LOWEST = -0x7fffffff - 1 ///< never returned: makes the enumeration as wide as an int
} FMOD_RESULT;

/// How a system is initialised.
typedef unsigned int FMOD_INITFLAGS;
enum { FMOD_INIT_NORMAL = 0 };

/// How a sound is opened. They describe the one way in which tracks are played here.
typedef unsigned int FMOD_MODE;
enum {
    FMOD_LOOP_OFF = 0x1,        ///< plays once
    FMOD_2D = 0x8,              ///< has no place in space
    FMOD_SOFTWARE = 0x40,       ///< is mixed by the program
    FMOD_CREATESAMPLE = 0x100,  ///< is decoded into memory
    FMOD_ACCURATETIME = 0x4000, ///< has an exact length
    FMOD_UNIQUE = 0x20000       ///< is played by one channel at a time
};

/// Which channel is to play.
typedef enum FMOD_CHANNELINDEX { FMOD_CHANNEL_FREE = -1 /* any that is free */ } FMOD_CHANNELINDEX;

/// Units of time.
typedef unsigned int FMOD_TIMEUNIT;
enum { FMOD_TIMEUNIT_MS = 1 };

/// The weights that a spectrum gives to its samples.
typedef enum FMOD_DSP_FFT_WINDOW { FMOD_DSP_FFT_WINDOW_TRIANGLE = 1 } FMOD_DSP_FFT_WINDOW;

/// Makes the system, which belongs to the caller until FMOD_System_Release.
FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system);

/// Opens the sound device. Without one the show runs silent at its true speed: that is FMOD_OK too.
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS flags,
                             void* extradriverdata);

/// Opens an MP3 file of any sample rate, mono or stereo, and returns at once: it is decoded in the
/// background, until it is played. Errors: the FMOD_ERR_FILE_ ones, FMOD_ERR_NOT_INITIALISED.
FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                     FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound);

/// Plays a sound once, from its beginning, on a new channel that waits there if paused. The channel's handle
/// is good until it is stopped, comes to the end of the sound, or the system is closed.
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel);

/// Does nothing, and need not be called.
FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system);

/// Stops the channel and closes the device; the system can be initialised again, and its sound remains.
FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system);

/// Closes the system and gives it back, together with its sound.
FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system);

/// Gives the sound back. A channel that is playing it plays on.
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound);

/// Tells how long the sound is, in milliseconds rounded down, without the padding of its encoder.
FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND* sound, unsigned int* length, FMOD_TIMEUNIT unit);

/// Writes the name of the sound's file without folders, and a zero: at most namelength bytes.
FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND* sound, char* name, int namelength);

/// Tells whether the channel has been paused.
FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL* paused);

/// Holds the channel where it is, or lets it go on from there.
FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* channel, FMOD_BOOL paused);

/// Takes any count of repetitions. FMOD_LOOP_OFF overrules it: a sound plays once.
FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* channel, int loopcount);

/// Ends the channel, and with it the handle.
FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel);

/// Writes the spectrum of what is heard now: the left side, 2 * numvalues samples around the place that is
/// playing, weighted with a triangle. numvalues is a power of two, 64..8192. Entry k is the magnitude at
/// k * rate / (2 * numvalues) Hz; a sine of full scale there reads 1. Silence, a paused channel and any error
/// read 0.
FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues, int channeloffset,
                                     FMOD_DSP_FFT_WINDOW window);

/// Tells which place of the sound is heard now, in milliseconds rounded down. It never runs backwards.
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT unit);

/// Goes to a place in the sound, in milliseconds; a paused channel waits there.
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT unit);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-use-using,modernize-redundant-void-arg)
#endif
