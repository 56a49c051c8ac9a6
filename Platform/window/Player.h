#pragma once

#include "Host.h"
#include "Picture.h"
#include "Screen.h"
#include "ShowOptions.h"
#include "Song.h"

#include <chrono>
#include <optional>

namespace window {

/// The show in a window of its own, in real time. With a song it starts over, in rounds, as long as that goes
/// on, each with the next seed, and ends with it.
class Player : public host::Host {
public:
    /// All of these must outlive it. The options are complete; sized: the user has asked for their size, and
    /// not only the settings. Without a song the show's own track plays.
    Player(Screen& screen, const recorder::ShowOptions& options, bool sized,
           const std::optional<song::Song>& song)
        : screen(screen), options(options), sized(sized), song(song) {}

    /// Plays to the end, or until the viewer leaves; answers the show's exit status.
    int play();

    host::Extent openWindow(int width, int height) override;
    void closeWindow() override {} // goes with the screen
    float getPixelScale() const override;
    unsigned int seedFor(unsigned int /*asked*/) override { return *options.seed + round; }
    void openGlIsLoaded() override { picture->takeOver(); }
    void showFrame() override;
    bool wantsEscape() override;
    unsigned int getTicks() override;
    void wait(unsigned int milliseconds) override;

private:
    host::Extent chooseSize() const;

    using Clock = std::chrono::steady_clock;

    Screen& screen;
    const recorder::ShowOptions& options;
    bool sized;
    const std::optional<song::Song>& song;
    std::optional<Picture> picture; ///< once the window is open
    bool enlarged = false;          ///< whether the picture is, to the size of the window
    unsigned int round = 0;
    bool playing = false; ///< the show would go on
    Clock::time_point start = Clock::now();
};

} // namespace window
