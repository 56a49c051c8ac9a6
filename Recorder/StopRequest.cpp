#include "StopRequest.h"

#include <csignal>
#include <initializer_list>

namespace recorder {

namespace {

volatile std::sig_atomic_t received = 0;

extern "C" void remember(int signal) { received = signal; }

} // namespace

void StopRequest::listen() {
    struct sigaction action {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
    }
}

int StopRequest::getSignal() { return received; }

} // namespace recorder
