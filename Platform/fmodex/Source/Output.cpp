#include "Output.h"

#include "Silence.h"

#include <cstdlib>
#include <dlfcn.h>

namespace fmodex {

namespace {

using AlsaHandler = void (*)(const char* file, int line, const char* function, int error, const char* format,
                             ...);

void ignore(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
            const char* /*format*/, ...) {}

/// ALSA writes its troubles to standard error, unless somebody takes them off it. Null gives them back.
void handleAlsaErrors(AlsaHandler handler) {
    void* const alsa = ::dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (alsa == nullptr) {
        return;
    }
    using SetHandler = int (*)(AlsaHandler);
    const auto setHandler = reinterpret_cast<SetHandler>(::dlsym(alsa, "snd_lib_error_set_handler"));
    if (setHandler != nullptr) {
        setHandler(handler);
    }
    ::dlclose(alsa);
}

} // namespace

std::unique_ptr<Output> Output::open() {
    const Silence silence;
    // For later, when a device gets lost. Somebody who wants to hear of it says so in the environment.
    ::setenv("ALSOFT_LOGLEVEL", "0", 0);
    ALCdevice* const device = alcOpenDevice(nullptr);
    ALCcontext* const context = device != nullptr ? alcCreateContext(device, nullptr) : nullptr;
    if (context == nullptr) {
        if (device != nullptr) {
            alcCloseDevice(device);
        }
        return nullptr;
    }
    alcMakeContextCurrent(context);
    handleAlsaErrors(ignore);
    return std::unique_ptr<Output>(new Output(device, context));
}

Output::~Output() {
    alcMakeContextCurrent(nullptr);
    alcDestroyContext(context);
    alcCloseDevice(device);
    handleAlsaErrors(nullptr);
}

} // namespace fmodex
