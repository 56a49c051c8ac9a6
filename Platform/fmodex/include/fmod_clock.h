// The time that the sound layer goes by.
#ifndef FMOD_CLOCK_H
#define FMOD_CLOCK_H

// This header is C as well as C++.
// NOLINTBEGIN(modernize-use-using,modernize-redundant-void-arg)

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/// A clock: microseconds since any moment, never running backwards.
typedef unsigned long long (*FMOD_CLOCK)(void);

/// Supplies the clock, before the system is initialised; null stands for the real time.
///
/// With a supplied clock no sound device is opened, and everything that is told follows from the clock alone:
/// the position of a channel is the time that has passed since it was played, without its pauses, exact to
/// the sample. A frame-by-frame recording thus sees the same sound every time, however long its frames take.
void FMOD_Clock_Set(FMOD_CLOCK microseconds);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-use-using,modernize-redundant-void-arg)
#endif
