#include "StopRequest.h"

#include <csignal>
#include <initializer_list>

namespace recorder {

namespace {

volatile std::sig_atomic_t received = 0;

extern "C" void remember(int signal) { received = signal; }

} // namespace

void StopRequest::listen() {
    // Whether our children succeeded is for us to learn.
    std::signal(SIGCHLD, SIG_DFL);
    // A reader that goes away is noticed when writing to it fails.
    std::signal(SIGPIPE, SIG_IGN);
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
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

int StopRequest::getSignal() { return received; }

} // namespace recorder
