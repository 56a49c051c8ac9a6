#pragma once

namespace recorder {

/// The user's wish to stop early, sent as SIGINT, SIGTERM, SIGHUP or SIGQUIT.
class StopRequest {
public:
    /// Hears it from now on, for the rest of the process's life. What else whoever started it has done to its
    /// signals is undone.
    static void listen();

    /// The signal that came, 0 as long as none has.
    static int getSignal();
};

} // namespace recorder
