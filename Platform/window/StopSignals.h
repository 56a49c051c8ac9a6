#pragma once

namespace window {

/// The system's requests to end the program: SIGINT, SIGTERM, SIGHUP, SIGQUIT. The first one is an answer to
/// be asked for; those that come with it (a terminal that closes sends two) change nothing, and one that
/// comes when the program had seconds to go by itself ends it at once.
class StopSignals {
public:
    /// Hears requests from now on, for the rest of the process's life. Those that somebody ignores stay so.
    static void listen();

    static bool came();
};

} // namespace window
