#include "Piece.h"

#include "Draft.h"
#include "StopRequest.h"
#include "describe.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

namespace {

// How ssh ends if it is at fault, or the other end was killed.
constexpr int SSH_FAILED = 255;

// The least of the show's own statuses.
constexpr int SHOW_FAILED = 252;

/// For any shell: the words as they are.
std::string quoted(const Arguments& words) {
    std::string line;
    for (const std::string& word : words) {
        line += line.empty() ? "'" : " '";
        for (const char letter : word) {
            line += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
        }
        line += "'";
    }
    return line;
}

/// "ssh: no such host" without its first word.
std::string withoutSpeaker(const std::string& line) {
    const std::size_t space = line.find(' ');
    return space != std::string::npos && space > 0 && line[space - 1] == ':' ? line.substr(space + 1) : line;
}

/// What ssh is to run: there the library of OpenGL is to keep no compiled shaders in the home folder.
std::string there(const Arguments& command) {
    return "exec env MESA_SHADER_CACHE_DISABLE=true " + quoted(command);
}

Arguments onMachine(const std::string& machine, const Arguments& command) {
    return machine == ":" ? command : Arguments{"ssh", "-o", "BatchMode=yes", "--", machine, there(command)};
}

} // namespace

Piece::Piece(const Order& order, const FrameRange& range, std::string machine)
    : range(range), machine(std::move(machine)), patience(order.patience), file(openNameless(order.folder)) {
    std::array<int, 2> its{-1, -1};
    for (std::size_t i = 0; i < its.size(); ++i) {
        std::array<int, 2> ends{-1, -1};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        voices[i] = ends[0];
        its[i] = ends[1];
        fcntl(voices[i], F_SETFL, O_NONBLOCK);
    }
    const int input = open(order.song.c_str(), O_RDONLY | O_CLOEXEC);
    Arguments command = order.command;
    command.insert(command.end(), {"--from", describeSeconds("%.3f", range.first), "--to",
                                   describeSeconds("%.3f", range.last + 1)});
    recorder = std::make_unique<Process>(Process::Keyboard::SHARED, [&] {
        return Process::become(onMachine(this->machine, command), {input, its[0], its[1]});
    });
    for (const int descriptor : {input, its[0], its[1]}) {
        close(descriptor);
    }
    lastHeard = std::chrono::steady_clock::now();
}

Piece::~Piece() {
    recorder.reset();
    for (const int descriptor : {file, voices[0], voices[1]}) {
        close(descriptor);
    }
}

std::string Piece::getPath() const { return pathOf(file); }

void Piece::listen() {
    const auto now = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < voices.size(); ++i) {
        std::array<char, 65536> text{};
        ssize_t count = 0;
        while (voices[i] >= 0 && (count = read(voices[i], text.data(), text.size())) > 0) {
            lastHeard = now;
            take(i, text.data(), static_cast<std::size_t>(count));
        }
        if (voices[i] >= 0 && count == 0) {
            close(std::exchange(voices[i], -1));
        }
    }
    if (voices[0] < 0 && voices[1] < 0) {
        finish();
    } else if (now - lastHeard > std::chrono::seconds(patience)) {
        fail("nothing was heard of it for " + std::to_string(patience) + " s");
    }
}

void Piece::take(std::size_t voice, const char* text, std::size_t count) {
    if (voice == 0) {
        while (count > 0) {
            const ssize_t kept = write(file, text, count);
            if (kept < 0) {
                fail("can't keep it: " + std::generic_category().message(errno));
            }
            text += kept;
            count -= static_cast<std::size_t>(kept);
        }
        return;
    }
    said.append(text, count);
    for (std::size_t end = 0; (end = said.find('\n')) != std::string::npos; said.erase(0, end + 1)) {
        const std::string line = said.substr(0, end);
        if (line.find_first_not_of("0123456789") != std::string::npos) {
            last = line;
            lastReason = line.find(": ") != std::string::npos ? line : lastReason;
        } else if (!line.empty()) {
            done = std::min(static_cast<unsigned int>(std::stoul(line)), range.count());
        }
    }
}

void Piece::finish() {
    const int status = recorder->wait();
    recorder.reset();
    if (StopRequest::getSignal() != 0) {
        return; // what the keyboard sends has reached it too
    }
    if (WIFSIGNALED(status)) {
        fail("killed by signal " + std::to_string(WTERMSIG(status)));
    }
    if (WEXITSTATUS(status) == 0) {
        done = range.count();
        return;
    }
    // What the show says of its own accord is no reason, unless it failed itself.
    const std::string& reason =
        WEXITSTATUS(status) >= SHOW_FAILED && WEXITSTATUS(status) < SSH_FAILED ? last : lastReason;
    fail(reason.empty() ? "status " + std::to_string(WEXITSTATUS(status)) : withoutSpeaker(reason));
}

void Piece::fail(const std::string& reason) const {
    throw std::runtime_error("the piece from " + describeSeconds("%.3f", range.first) + " to " +
                             describeSeconds("%.3f", range.last + 1) + " s failed" +
                             (machine == ":" ? "" : " on " + machine) + ": " + reason);
}

} // namespace recorder
