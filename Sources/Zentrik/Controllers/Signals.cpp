#include "Zentrik/Controllers/Signals.h"

#include "Zentrik/Controllers/InputManager.h"

#include <csignal>

using Handler = void (*)(int);

static const int REQUESTS[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

static volatile std::sig_atomic_t requested = 0;

static void replace(Handler present, Handler next) {
    for (const int request : REQUESTS) {
        const Handler found = std::signal(request, next);
        if (found != present) {
            std::signal(request, found);
        }
    }
}

extern "C" {
static void leave(int /*request*/) {
    requested = 1;
    replace(leave, SIG_DFL);
}
}

void Signals::listen() { replace(SIG_DFL, leave); }

int Signals::getDirectionsPressed() const { return AD_NONE; }

int Signals::getButtonsState() { return INPUT_NONE; }

bool Signals::needEscape() { return escape; }

void Signals::update() { escape = requested != 0; }
