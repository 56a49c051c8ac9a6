// The time that the sound layer goes by.
#ifndef FMOD_CLOCK_H
#define FMOD_CLOCK_H

// This header is C as well as C++.
// NOLINTBEGIN(modernize-use-using,modernize-redundant-void-arg)

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/// A clock: microseconds since any moment, never running backwards, callable from any thread.
typedef unsigned long long (*FMOD_CLOCK)(void);

/// Supplies the clock for the systems that are initialised from now on; null stands for the real time.
///
/// A system with a supplied clock opens no sound device, and everything it tells follows from the clock
/// alone: the position of a channel is the time that has passed since it was played, without its pauses,
/// exact to the sample, and whoever asks for a part that has not been decoded yet is kept waiting until it
/// has. A frame-by-frame recording thus sees the same sound every time, however long its frames take.
void FMOD_Clock_Set(FMOD_CLOCK microseconds);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-use-using,modernize-redundant-void-arg)
#endif
