#pragma once

#include "FrameSize.h"

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace recorder {

/// A wish that can't be granted, on the command line or in the settings file; what() is one line for the
/// user.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws UsageError if no picture is made in that size, which need not be whole.
void requireAllowedSize(double width, double height);

/// The whole number that the text is, if it is one and small enough.
std::optional<unsigned int> wholeNumber(const std::string& text);

/// The arguments that follow a program's name, taken one after the other. What begins with "-" is an option,
/// but for "-" itself and all that comes after "--".
class ArgumentReader {
public:
    explicit ArgumentReader(const std::vector<std::string>& arguments) : arguments(arguments) {}

    /// Goes on to the next argument, if there is one.
    bool advance();

    const std::string& get() const { return arguments[current]; }
    bool isOption() const;

    /// Takes one more argument, which the option here needs. Throws UsageError if there is none.
    const std::string& value(const char* meaning);

private:
    const std::vector<std::string>& arguments;
    std::size_t current = 0;
    std::size_t next = 0;
    bool optionsAreOver = false;
};

/// What the user says about the show itself, whether it is played or recorded. File names are the user's own,
/// relative to the directory the program was started in.
struct ShowOptions {
    static constexpr const char* HELP =
        R"(  --size WIDTHxHEIGHT    size of the picture, 16x16 to 3840x2160; else that of the settings file
  --seed NUMBER          start of the show's random numbers, 0 to 16777216; else that of the settings file
  --data DIR             the show's data folder ("data" by default)
  --help                 show this text
)";

    /// Takes the option that the reader is at, if it is one of these. Throws UsageError; touches no file.
    bool take(ArgumentReader& reader);

    void setTrack(const std::string& file);

    bool wantsHelp = false;
    std::string dataFolder = "data";
    std::optional<FrameSize> size;
    std::optional<unsigned int> seed;
    std::string track; ///< a song in place of the data folder's track; empty: none
};

} // namespace recorder
