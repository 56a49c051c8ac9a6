#include "FrameQueue.h"

namespace recorder {

FrameQueue::FrameQueue(std::size_t slots, std::size_t frameBytes) : slots(slots) {
    for (Frame& slot : this->slots) {
        slot.pixels.resize(frameBytes);
    }
}

Frame& FrameQueue::beginFill() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return filled - taken < slots.size(); });
    return slots[filled % slots.size()];
}

void FrameQueue::endFill() {
    const std::lock_guard<std::mutex> lock(mutex);
    ++filled;
    changed.notify_one();
}

void FrameQueue::close() {
    const std::lock_guard<std::mutex> lock(mutex);
    closed = true;
    changed.notify_one();
}

const Frame* FrameQueue::beginTake() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return filled > taken || closed; });
    return filled > taken ? &slots[taken % slots.size()] : nullptr;
}

void FrameQueue::endTake() {
    const std::lock_guard<std::mutex> lock(mutex);
    ++taken;
    changed.notify_one();
}

} // namespace recorder
