#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace sound {

// Both sides of one sample, -1..1.
struct Sample {
    double left;
    double right;
};

// What is heard at a time in seconds.
using Signal = std::function<Sample(double)>;

// A sine of full scale on the left, and nothing on the right.
Signal sineLeft(double hertz);

// Nothing at all.
Sample silence(double time);

// A folder of its own for each process, which is removed with the object.
class Folder {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();

    std::string path(const std::string& name) const { return path_ + "/" + name; }

    // Encodes so many samples of a signal and returns the path of the MP3.
    std::string encode(const std::string& name, const Signal& signal, int samples, int rate = 44100,
                       const std::string& options = "-b 320 -m s", bool mono = false) const;

    // Writes a file of these bytes and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const;

private:
    std::string path_;
};

// The bytes of a file.
std::string read(const std::string& path);

// Bytes that look like nothing, the same ones for the same seed.
std::string noise(std::size_t bytes, unsigned seed);

} // namespace sound
