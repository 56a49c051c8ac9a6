#include "Host.h"

namespace host {

static Host* inCharge = nullptr;

Host::Host() { inCharge = this; }

Host::~Host() { inCharge = nullptr; }

Host& Host::current() { return *inCharge; }

} // namespace host
