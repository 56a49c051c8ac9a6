#pragma once

namespace recorder {

/// The user's wish to stop early, sent as SIGINT, SIGTERM, SIGHUP or SIGQUIT. Caught from listen() on, for
/// the rest of the process's life.
class StopRequest {
public:
    static void listen();

    /// The signal that came, 0 as long as none has.
    static int getSignal();
};

} // namespace recorder
