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
    for (const int request : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        // Whoever starts a program to go on without its terminal has some of them ignored already.
        struct sigaction before {};
        sigaction(request, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            sigaction(request, &action, nullptr);
        }
    }
}

int StopRequest::getSignal() { return received; }

} // namespace recorder
