#include "Output.h"

#include "Error.h"
#include "Silence.h"

#include <AL/alext.h>

#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <utility>

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
    Device device(alcOpenDevice(nullptr));
    Context context(device ? alcCreateContext(device.get(), nullptr) : nullptr);
    if (!context) {
        return nullptr;
    }
    handleAlsaErrors(ignore);
    return std::unique_ptr<Output>(new Output(std::move(device), std::move(context)));
}

Output::Output(Device device, Context context)
    : device(std::move(device)), context(std::move(context)), thread(&Output::supply, this) {}

Output::~Output() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        closing = true;
    }
    closed.notify_all();
    thread.join();
    context.reset();
    device.reset();
    handleAlsaErrors(nullptr);
}

void Output::play(const std::shared_ptr<Channel>& channel) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (lost) {
        channel->leaveDevice();
    } else {
        waiting.push_back(channel);
    }
}

void Output::supply() {
    alcSetThreadContext(context.get());
    std::unique_lock<std::mutex> lock(mutex);
    while (!closing && !lost) {
        const std::vector<std::shared_ptr<Channel>> added = std::exchange(waiting, {});
        lock.unlock();
        welcome(added);
        voices.remove_if([](Voice& voice) { return !voice.update(); });
        const bool goesOn = isConnected();
        if (goesOn) {
            for (Voice& voice : voices) {
                voice.report();
            }
        }
        lock.lock();
        lost = !goesOn;
        closed.wait_for(lock, std::chrono::milliseconds(5), [this] { return closing || lost; });
    }
    for (Voice& voice : voices) {
        voice.getChannel().leaveDevice();
    }
    for (const std::shared_ptr<Channel>& channel : waiting) {
        channel->leaveDevice();
    }
    voices.clear();
    waiting.clear();
    alcSetThreadContext(nullptr);
}

void Output::welcome(const std::vector<std::shared_ptr<Channel>>& channels) {
    for (const std::shared_ptr<Channel>& channel : channels) {
        try {
            voices.emplace_back(channel);
        } catch (const std::exception&) {
            channel->leaveDevice(); // it plays on unheard
        }
    }
}

bool Output::isConnected() const {
    ALCint connected = ALC_TRUE;
    if (alcIsExtensionPresent(device.get(), "ALC_EXT_disconnect") == ALC_TRUE) {
        alcGetIntegerv(device.get(), ALC_CONNECTED, 1, &connected);
    }
    return connected == ALC_TRUE;
}

} // namespace fmodex
