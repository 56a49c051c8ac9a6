#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace recorder {

/// A wish that can't be granted, on the command line or in the settings file; what() is one line for the
/// user.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Words for a program.
using Arguments = std::vector<std::string>;

/// What may be said on a program's command line: each thing stands here once, for the reader of the command
/// line and for the user who wants help. Options and names come in any order; after "--" there are names
/// only. --help and --version come by themselves.
class CommandLine {
public:
    struct Option {
        std::string name;                           ///< without the two dashes
        char letter;                                ///< the same for people in a hurry; 0: there is none
        std::string values;                         ///< what has to follow, a word each: "SECONDS FILE"
        std::string meaning;                        ///< lines of the help; empty: not for people
        std::function<void(const Arguments&)> take; ///< the values; may throw UsageError
        bool alone = false;                         ///< whether a name without an option is for this one
    };

    /// The help is the text before, the options, and the text after.
    CommandLine(std::string before, std::string after) : before(std::move(before)), after(std::move(after)) {}

    void add(Option option) { options.push_back(std::move(option)); }

    /// Reads the arguments that follow the program's name, once. Answers a text if the user wants no more
    /// than to be told it. Throws UsageError.
    std::string parse(const Arguments& arguments);

private:
    std::string help() const;

    std::string before;
    std::string after;
    std::vector<Option> options;
};

/// The name under which the user knows the program, as its start script tells.
std::string commandName();

/// The whole number that was given for something. Throws UsageError.
unsigned int wholeNumber(const std::string& what, const std::string& text, unsigned int least,
                         unsigned int most);

/// Takes a name for something of which there is one. Throws UsageError.
void setOnce(std::string& name, const std::string& what, const std::string& given);

} // namespace recorder
