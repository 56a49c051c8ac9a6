#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

namespace recorder {

// One run of FFmpeg, fed through a pipe on its standard input. It runs in a process group of its own, so that
// Ctrl-C reaches us alone and the file still gets its end. Owned by whoever feeds it; one thread at a time.
class Encoder {
public:
    static bool isInstalled();

    // Starts it with these arguments, to write to a file that the user knows by another name. Every failure
    // from here on is a std::runtime_error with one line.
    Encoder(std::vector<std::string> arguments, const std::string& file, std::string name);
    // An encoder that wasn't finished is killed: nobody wants its file.
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void write(const std::vector<unsigned char>& bytes);

    // Ends the input and waits until all is written.
    void finish();

private:
    std::string getComplaint() const;

    std::string output; // as FFmpeg is told
    std::string name;
    pid_t process = -1;
    int input = -1;
    int log = -1; // what FFmpeg has to say, in memory
};

// How FFmpeg is told about frames of this size coming on its standard input.
std::vector<std::string> frameInput(const struct FrameSize& size);

} // namespace recorder
