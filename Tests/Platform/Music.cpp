#include "Music.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace sound {

namespace {

std::string littleEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return text;
}

std::string sixteenBit(double sample) {
    const auto value = static_cast<std::int16_t>(std::lround(sample * 32767));
    return littleEndian(static_cast<std::uint16_t>(value), 2);
}

} // namespace

Signal sineLeft(double hertz) {
    return [hertz](double time) { return Sample{std::sin(2 * M_PI * hertz * time), 0}; };
}

Sample silence(double /*time*/) { return {0, 0}; }

Folder::Folder() {
    path_ = (std::filesystem::temp_directory_path() / "sound-XXXXXX").string();
    if (::mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string Folder::encode(const std::string& name, const Signal& signal, int samples, int rate,
                           const std::string& options, bool mono) const {
    std::string raw;
    for (int i = 0; i < samples; ++i) {
        const Sample sample = signal(static_cast<double>(i) / rate);
        raw += sixteenBit(sample.left);
        raw += mono ? "" : sixteenBit(sample.right);
    }
    const auto size = static_cast<std::uint32_t>(raw.size());
    const int sides = mono ? 1 : 2;
    const std::string wave = "RIFF" + littleEndian(36 + size, 4) + "WAVEfmt " + littleEndian(16, 4) +
                             littleEndian(1, 2) + littleEndian(sides, 2) + littleEndian(rate, 4) +
                             littleEndian(rate * sides * 2, 4) + littleEndian(sides * 2, 2) +
                             littleEndian(16, 2) + "data" + littleEndian(size, 4) + raw;
    const std::string source = write(name + ".wav", wave);
    std::string encoded = path(name);
    // As loud as the source, and with all its frequencies.
    const std::string command = std::string(LAME) + " --quiet --noreplaygain --scale 1 --lowpass -1 " +
                                options + " '" + source + "' '" + encoded + "'";
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("cannot encode: " + command);
    }
    return encoded;
}

std::string Folder::write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
}

std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string noise(std::size_t bytes, unsigned seed) {
    std::mt19937 source(seed);
    std::string text(bytes, '\0');
    for (char& c : text) {
        c = static_cast<char>(source() & 0xFF);
    }
    return text;
}

} // namespace sound
