#pragma once

namespace sound {

// How often this thread has taken something from the heap, in the program and in the layer alike.
int allocations();

} // namespace sound
