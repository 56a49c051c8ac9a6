#pragma once

#include "CommandLine.h"
#include "FrameRange.h"
#include "Process.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace recorder {

/// A piece of a video, which another recorder makes, here or elsewhere.
class Piece {
public:
    /// What is the same for all of them.
    struct Order {
        Arguments command;     ///< but for the range
        std::string song;      ///< a file for its standard input
        std::string folder;    ///< where the piece may lie, without a name
        unsigned int patience; ///< seconds for which nothing may be heard of it
    };

    /// Has it made on a machine that ssh knows, or on this one (":"). Throws std::runtime_error with one
    /// line.
    Piece(const Order& order, const FrameRange& range, std::string machine);
    ~Piece();
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;

    const std::string& getMachine() const { return machine; }
    unsigned int getDone() const { return done; } ///< frames
    bool isComplete() const { return recorder == nullptr; }
    std::string getPath() const;

    /// Where to wait for what it says; -1: nothing more comes.
    const std::array<int, 2>& getVoices() const { return voices; }

    /// Takes what has come. Throws std::runtime_error with one line, which names the piece, if it has failed.
    void listen();

private:
    void take(std::size_t voice, const char* text, std::size_t count);
    void finish();
    [[noreturn]] void fail(const std::string& reason) const;

    FrameRange range;
    std::string machine;
    unsigned int patience;
    int file;
    std::array<int, 2> voices{-1, -1}; ///< its standard output and error
    std::unique_ptr<Process> recorder;
    std::chrono::steady_clock::time_point lastHeard;
    std::string said;       ///< that isn't a line yet
    std::string last;       ///< of its lines
    std::string lastReason; ///< the last one that can be one
    unsigned int done = 0;
};

} // namespace recorder
