#include "FrameLink.h"

#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace recorder {

namespace {

constexpr int NOT_LONG = 1000; // ms

[[noreturn]] void fail() {
    throw std::runtime_error("there is no room for frames: " + std::generic_category().message(errno));
}

} // namespace

FrameLink::FrameLink(std::size_t frameBytes) : frameBytes(frameBytes) {
    void* const mapped =
        mmap(nullptr, SLOTS * frameBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        fail();
    }
    memory = static_cast<unsigned char*>(mapped);
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        munmap(memory, SLOTS * frameBytes);
        fail();
    }
}

FrameLink::~FrameLink() {
    munmap(memory, SLOTS * frameBytes);
    for (const int one : ends) {
        close(one);
    }
}

void FrameLink::take(Side side) {
    const std::size_t ours = side == Side::DRAWING ? 0 : 1;
    end = ends[ours];
    close(ends[1 - ours]);
    ends[1 - ours] = -1;
}

unsigned char* FrameLink::beginFill() {
    if (empty == 0) {
        char given = 0;
        if (recv(end, &given, sizeof given, 0) != sizeof given) {
            _exit(EXIT_FAILURE); // nobody is left to draw for
        }
        ++empty;
    }
    return memory + filled % SLOTS * frameBytes;
}

void FrameLink::endFill(unsigned int frame) {
    --empty;
    ++filled;
    send({frame, true});
}

void FrameLink::pass(unsigned int frame) { send({frame, false}); }

void FrameLink::send(const Message& message) const { ::send(end, &message, sizeof message, MSG_NOSIGNAL); }

FrameLink::Event FrameLink::next(int stream) {
    std::array<pollfd, 2> watched{{{end, POLLIN, 0}, {stream, 0, 0}}};
    if (poll(watched.data(), watched.size(), NOT_LONG) <= 0) {
        return {Event::Kind::NOTHING_YET, 0, nullptr};
    }
    if (watched[1].revents != 0) {
        throw std::runtime_error("nobody reads standard output any more");
    }
    Message message{};
    if (recv(end, &message, sizeof message, 0) != sizeof message) {
        return {Event::Kind::OVER, 0, nullptr};
    }
    if (!message.drawn) {
        return {Event::Kind::PASSED, message.frame, nullptr};
    }
    return {Event::Kind::DRAWN, message.frame, memory + filled++ % SLOTS * frameBytes};
}

void FrameLink::giveBack() const { ::send(end, "", 1, MSG_NOSIGNAL); }

} // namespace recorder
