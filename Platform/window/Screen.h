#pragma once

#include "Host.h"

#include <stdexcept>

struct GLFWwindow;

namespace window {

/// There is nobody to ask for a window. what() is one sentence for the user.
class NoScreen : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A window over the whole screen as it is, in its real pixels, with an OpenGL context that is current on the
/// thread that opened it. Screen and keyboard are the window library's: there is one such object.
class Screen {
public:
    /// Throws NoScreen.
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Opens the window, if it is not open. Throws std::runtime_error with one line.
    void open();

    /// The pixels of the screen.
    host::Extent getSize() const;

    /// Those of the window, which may take a moment to be as large. It must be open, as for what follows.
    host::Extent getWindowSize() const;

    /// Shows what was drawn.
    void swap();

    /// Whether Escape was pressed, however shortly, or the window closed, ever since it was opened.
    bool wantsEscape();

private:
    GLFWwindow* window = nullptr;
    bool escape = false;
};

} // namespace window
