#pragma once

#include "Process.h"

#include <memory>
#include <string>
#include <vector>

namespace recorder {

/// One run of FFmpeg, fed through a pipe on its standard input. Ctrl-C reaches us alone, so that the file
/// still gets its end. Owned by whoever feeds it; one thread at a time.
class Encoder {
public:
    /// Throws std::runtime_error with one line if FFmpeg isn't there.
    static void requireInstalled();

    /// Starts it with these arguments, to write to a file that the user knows by another name. Every failure
    /// from here on is a std::runtime_error with one line.
    Encoder(const std::vector<std::string>& arguments, const std::string& file, std::string name);
    /// An encoder that wasn't finished is killed: nobody wants its file.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void write(const std::vector<unsigned char>& bytes);

    /// Ends the input and waits until all is written.
    void finish();

private:
    std::string getComplaint() const;

    std::string output; ///< as FFmpeg is told
    std::string name;
    std::unique_ptr<Process> process;
    int input = -1;
    int log = -1; ///< what FFmpeg has to say, in memory
};

} // namespace recorder
