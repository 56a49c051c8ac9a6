#pragma once

#include "Error.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace fmodex {

/// A number that no registry has given out before, odd and thus no address of anything.
std::uintptr_t newTicket();

/// Knows which handles are alive, what stands behind them, and which system they belong to. A handle is a
/// ticket and never followed as a pointer, so that any value at all may be asked for.
template <typename Handle, typename Object>
class Registry {
public:
    using Entry = std::pair<Handle*, std::shared_ptr<Object>>;

    Handle* add(std::shared_ptr<Object> object, const FMOD_SYSTEM* owner) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): it is a number, and stays one
        auto* handle = reinterpret_cast<Handle*>(newTicket());
        const std::lock_guard<std::mutex> lock(mutex);
        entries.emplace(handle, Item{std::move(object), owner});
        return handle;
    }

    /// Throws FMOD_ERR_HANDLE when nothing is there, or when it belongs to another system than the one given.
    std::shared_ptr<Object> find(Handle* handle, const FMOD_SYSTEM* owner = nullptr) const {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto found = entries.find(handle);
        require(found != entries.end(), FMOD_ERR_HANDLE);
        require(owner == nullptr || owner == found->second.owner, FMOD_ERR_HANDLE);
        return found->second.object;
    }

    /// Forgets a handle. The object goes with the last pointer to it, outside of the lock. Throws like find.
    std::shared_ptr<Object> take(Handle* handle) {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto found = entries.find(handle);
        require(found != entries.end(), FMOD_ERR_HANDLE);
        std::shared_ptr<Object> object = std::move(found->second.object);
        entries.erase(found);
        return object;
    }

    /// Whatever belongs to a system.
    std::vector<Entry> of(const FMOD_SYSTEM* owner) const {
        const std::lock_guard<std::mutex> lock(mutex);
        std::vector<Entry> found;
        for (const auto& [handle, item] : entries) {
            if (item.owner == owner) {
                found.emplace_back(handle, item.object);
            }
        }
        return found;
    }

    /// Forgets a handle, if it is still there.
    void drop(Handle* handle) {
        const std::lock_guard<std::mutex> lock(mutex);
        entries.erase(handle);
    }

private:
    struct Item {
        std::shared_ptr<Object> object;
        const FMOD_SYSTEM* owner;
    };

    mutable std::mutex mutex;
    std::map<Handle*, Item> entries;
};

} // namespace fmodex
