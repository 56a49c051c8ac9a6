#include "CommandLine.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <getopt.h>
#include <regex>
#include <system_error>
#include <utility>

namespace recorder {

namespace {

// getopt answers a letter, one of its signs, or the number of a row of ours, counted from here.
constexpr int FIRST_ROW = 256;
constexpr int NAME_ALONE = 1;

constexpr std::size_t HELP_COLUMN = 25;

} // namespace

std::string CommandLine::parse(const Arguments& arguments) {
    std::string answer;
    add({"help", 'h', "", "show this text", [&](const auto&) { answer = help(); }});
    add({"version", 'V', "", "show which version this is",
         [&](const auto&) { answer = "Quelar " QUELAR_VERSION "\n"; }});

    std::string letters = "-:"; // names where they stand, and a sign of its own for a missing value
    std::vector<option> names;
    for (const Option& row : options) {
        const bool bare = row.values.empty();
        if (row.letter != 0) {
            letters += std::string(1, row.letter) + (bare ? "" : ":");
        }
        names.push_back({row.name.c_str(), bare ? no_argument : required_argument, nullptr,
                         FIRST_ROW + static_cast<int>(names.size())});
    }
    names.push_back({});
    const auto rowOf = [&](int sign) -> const Option& {
        return sign >= FIRST_ROW ? options[static_cast<std::size_t>(sign - FIRST_ROW)]
                                 : *std::find_if(options.begin(), options.end(), [=](const Option& row) {
                                       return sign == NAME_ALONE ? row.alone : row.letter == sign;
                                   });
    };

    Arguments words = arguments;
    std::string program = commandName();
    std::vector<char*> argv = {program.data()};
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    const int count = static_cast<int>(argv.size());
    argv.push_back(nullptr);
    const auto next = [&] { return argv[static_cast<std::size_t>(optind++)]; };
    optind = 0; // anew, should another command line have been read
    opterr = 0;
    int sign = 0;
    while ((sign = getopt_long(count, argv.data(), letters.c_str(), names.data(), nullptr)) != -1) {
        if (sign == '?') {
            const bool isLetter = optopt > 0 && optopt < FIRST_ROW;
            throw UsageError("unknown option '" +
                             (isLetter ? std::string("-") + static_cast<char>(optopt)
                                       : argv[static_cast<std::size_t>(optind) - 1]) +
                             "'");
        }
        const Option& row = rowOf(sign == ':' ? optopt : sign);
        Arguments values;
        if (!row.values.empty()) {
            const auto wanted = std::count(row.values.begin(), row.values.end(), ' ') + 1;
            values.emplace_back(sign == ':' ? "" : optarg);
            while (static_cast<std::ptrdiff_t>(values.size()) < wanted) {
                values.emplace_back(optind < count ? next() : "");
            }
            if (std::count(values.begin(), values.end(), "") > 0) {
                throw UsageError("--" + row.name + " needs " + row.values);
            }
        }
        row.take(values);
    }
    while (optind < count) {
        rowOf(NAME_ALONE).take({next()});
    }
    return answer;
}

std::string CommandLine::help() const {
    std::string text = before;
    for (const Option& option : options) {
        if (option.meaning.empty()) {
            continue;
        }
        std::string line = "  " + (option.alone ? option.values + ", " : "");
        line += (option.letter != 0 ? std::string("-") + option.letter + ", " : "") + "--" + option.name;
        line += (option.values.empty() ? "" : " ") + option.values;
        const std::string indent(HELP_COLUMN, ' ');
        line += line.size() + 2 > HELP_COLUMN ? "\n" + indent : indent.substr(line.size());
        text += line;
        text += std::regex_replace(option.meaning, std::regex("\n"), "\n" + indent) + "\n";
    }
    return text + after;
}

std::string commandName() {
    const char* const name = std::getenv("QUELAR_COMMAND");
    return name != nullptr ? name : program_invocation_short_name;
}

unsigned int wholeNumber(const std::string& what, const std::string& text, unsigned int least,
                         unsigned int most) {
    unsigned int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error != std::errc() || number < least || number > most) {
        throw UsageError(what + ": '" + text + "' is not a whole number from " + std::to_string(least) +
                         " to " + std::to_string(most));
    }
    return number;
}

void setOnce(std::string& name, const std::string& what, const std::string& given) {
    if (!name.empty()) {
        throw UsageError("two " + what + " named, '" + name + "' and '" + given + "'");
    }
    name = given;
}

} // namespace recorder
