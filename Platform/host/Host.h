#pragma once

namespace host {

/// The size of a picture in pixels.
struct Extent {
    unsigned int width;
    unsigned int height;
};

/// What the show asks of the world around it. In its window the window library answers; whoever plays it
/// elsewhere derives from this, and sdl.cpp turns the show's calls into these questions. Besides, a host
/// supplies
///  - the OpenGL calls: a context that is current from openWindow to closeWindow, or answers of its own;
///  - the sound layer, or the clock that it goes by (fmod_clock.h), in step with getTicks;
///  - the C library's rand, if that draws other numbers than the show's.
/// The show asks on one thread. There is one host at a time, known from its construction to its destruction.
class Host {
public:
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    static Host& current();

    /// Something to draw on, of the size asked for; a side of 0 or less leaves it to the host. Answers the
    /// size that it has. A std::exception: there is nothing to draw on, and the show ends.
    virtual Extent openWindow(int width, int height) = 0;
    virtual void closeWindow() = 0;

    /// Pixels of what it opened for each that the show thinks of (Widths.h).
    virtual float getPixelScale() const { return 1; }

    /// OpenGL's functions are loaded and none of them was used yet.
    virtual void openGlIsLoaded() {}

    /// What the show's chance starts from, in place of the seed that its settings ask for.
    virtual unsigned int seedFor(unsigned int asked) { return asked; }

    /// The frame is complete. Once this returns the next one is drawn: a host that will not show it may let
    /// all drawing until the next call come to nothing, since every frame begins with a clear.
    virtual void showFrame() = 0;

    /// Asked once a frame: whether to end the show.
    virtual bool wantsEscape() = 0;

    /// Milliseconds since the start.
    virtual unsigned int getTicks() = 0;
    /// The show waits, to fill its frame up to 15 ms. The clock of a host that does not go by real time moves
    /// by this and by nothing else: every frame is then 15 ms long.
    virtual void wait(unsigned int milliseconds) = 0;

protected:
    Host();
    virtual ~Host();
};

/// Plays the show from its beginning to its end and answers its exit status.
int playShow();

/// The start of the program, to be defined by whoever hosts the show: its own main is led aside to playShow.
int start(int argc, char** argv);

} // namespace host
