#pragma once

#include "CommandLine.h"
#include "Process.h"

#include <cstddef>
#include <memory>
#include <string>

namespace recorder {

Arguments joined(std::initializer_list<Arguments> parts);

/// One run of FFmpeg, fed through a pipe on its standard input. Ctrl-C reaches us alone, so that the file
/// still gets its end.
class Encoder {
public:
    /// Where it writes to, and how the user knows that.
    struct Output {
        std::string path;
        std::string name;
        int stream = -1; ///< what is open there already, in place of the path
    };

    /// Throws std::runtime_error with one line if FFmpeg isn't there.
    static void requireInstalled();

    /// Starts it with these arguments. Every failure from here on is a std::runtime_error with one line.
    Encoder(const Arguments& arguments, const Output& output);
    /// An encoder that wasn't finished is killed: nobody wants its file.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void write(const unsigned char* bytes, std::size_t count);

    /// Ends the input and waits until all is written.
    void finish();

private:
    std::string getComplaint() const;

    std::string target; ///< as FFmpeg is told
    std::string name;
    std::unique_ptr<Process> process;
    int input = -1;
    int log = -1; ///< what FFmpeg has to say, in memory
};

} // namespace recorder
