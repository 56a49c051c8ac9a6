#pragma once

#include "CommandLine.h"
#include "Process.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

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

    /// Starts it with these arguments. Every failure from here on is a std::runtime_error with one line.
    Encoder(const Arguments& arguments, const Output& output);
    /// An encoder that wasn't finished is killed: nobody wants its file.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void write(const std::vector<unsigned char>& bytes);

    /// Ends the input and waits until all is written.
    void finish();

private:
    std::string getComplaint() const;

    std::string target; ///< as FFmpeg is told
    std::string name;
    int log; ///< what FFmpeg has to say, in memory
    std::FILE* input = nullptr;
    std::unique_ptr<Process> process;
};

} // namespace recorder
