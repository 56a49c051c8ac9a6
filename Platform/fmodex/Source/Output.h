#pragma once

#include "Channel.h"
#include "Voice.h"

#include <AL/alc.h>

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace fmodex {

/// The sound device, and the thread that keeps it supplied.
class Output {
public:
    /// Returns null when the machine has no device.
    static std::unique_ptr<Output> open();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

    /// Plays a channel until it is over. When the device is gone, or goes later, the channel is made to leave
    /// it.
    void play(const std::shared_ptr<Channel>& channel);

private:
    struct CloseDevice {
        void operator()(ALCdevice* device) const { alcCloseDevice(device); }
    };
    struct DestroyContext {
        void operator()(ALCcontext* context) const { alcDestroyContext(context); }
    };
    using Device = std::unique_ptr<ALCdevice, CloseDevice>;
    using Context = std::unique_ptr<ALCcontext, DestroyContext>;

    Output(Device device, Context context);
    void supply();
    void welcome(const std::vector<std::shared_ptr<Channel>>& channels);
    bool isConnected() const;

    Device device;
    Context context;

    std::mutex mutex;
    std::condition_variable closed;
    bool closing = false;
    bool lost = false;
    std::vector<std::shared_ptr<Channel>> waiting; ///< new channels

    std::list<Voice> voices; ///< the thread's own
    std::thread thread;
};

} // namespace fmodex
