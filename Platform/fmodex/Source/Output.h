#pragma once

#include <AL/alc.h>

#include <memory>

namespace fmodex {

/// The sound device, open for the voices of this process.
class Output {
public:
    /// Returns null when the machine has no device.
    static std::unique_ptr<Output> open();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

private:
    Output(ALCdevice* device, ALCcontext* context) : device(device), context(context) {}

    ALCdevice* device;
    ALCcontext* context;
};

} // namespace fmodex
