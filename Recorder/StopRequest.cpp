#include "StopRequest.h"

#include <csignal>

namespace recorder {

namespace {

volatile std::sig_atomic_t received = 0;

extern "C" void remember(int signal) { received = signal; }

} // namespace

void StopRequest::listen() {
    struct sigaction action {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // Whoever starts a program to go on without its terminal has this one ignored already.
    struct sigaction hangUp {};
    sigaction(SIGHUP, nullptr, &hangUp);
    if (hangUp.sa_handler != SIG_IGN) {
        sigaction(SIGHUP, &action, nullptr);
    }
}

int StopRequest::getSignal() { return received; }

} // namespace recorder
