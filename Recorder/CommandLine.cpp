#include "CommandLine.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <getopt.h>
#include <system_error>

namespace recorder {

namespace {

// getopt answers a letter, one of its signs, or the number of a row of ours, counted from here.
constexpr int FIRST_ROW = 256;
constexpr int NAME_ALONE = 1;

constexpr std::size_t HELP_COLUMN = 25;

} // namespace

std::string CommandLine::parse(const Arguments& arguments) const {
    std::string answer;
    std::vector<Option> rows = options;
    rows.push_back({"help", 'h', "", "", [&](const auto&) { answer = help(); }});
    rows.push_back({"version", 'V', "", "", [&](const auto&) { answer = "Quelar " QUELAR_VERSION "\n"; }});

    std::string letters = "-:"; // names where they stand, and a sign of its own for a missing value
    std::vector<option> names;
    for (const Option& row : rows) {
        const bool bare = row.values.empty();
        if (row.letter != 0) {
            letters += std::string(1, row.letter) + (bare ? "" : ":");
        }
        names.push_back({row.name.c_str(), bare ? no_argument : required_argument, nullptr,
                         FIRST_ROW + static_cast<int>(names.size())});
    }
    names.push_back({});
    const auto rowOf = [&](int sign) -> const Option& {
        return sign >= FIRST_ROW ? rows[static_cast<std::size_t>(sign - FIRST_ROW)]
                                 : *std::find_if(rows.begin(), rows.end(), [=](const Option& row) {
                                       return sign == NAME_ALONE ? row.alone : row.letter == sign;
                                   });
    };

    Arguments words = {commandName()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
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
            throw UsageError(optopt >= FIRST_ROW ? "--" + rowOf(optopt).name + " takes no value"
                             : optopt != 0
                                 ? std::string("unknown option '-") + static_cast<char>(optopt) + "'"
                                 : "unknown option '" + words[static_cast<std::size_t>(optind) - 1] + "'");
        }
        const Option& row = rowOf(sign == ':' ? optopt : sign);
        Arguments values;
        if (sign != ':' && optarg != nullptr) {
            values.emplace_back(optarg);
        }
        const auto wanted = static_cast<std::size_t>(std::count(row.values.begin(), row.values.end(), ' ')) +
                            (row.values.empty() ? 0 : 1);
        while (values.size() < wanted && optind < count) {
            values.emplace_back(next());
        }
        if (values.size() < wanted || std::count(values.begin(), values.end(), "") > 0) {
            throw UsageError("--" + row.name + " needs " + row.values);
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
    const auto explain = [&](const Option& option, const std::string& meaning) {
        std::string line = std::string("  ") + (option.alone ? option.values + ", " : "");
        if (option.letter != 0) {
            line += std::string("-") + option.letter + ", ";
        }
        line += "--" + option.name + (option.values.empty() ? "" : " ") + option.values;
        line += line.size() + 2 > HELP_COLUMN ? "\n" + std::string(HELP_COLUMN, ' ')
                                              : std::string(HELP_COLUMN - line.size(), ' ');
        for (const char letter : meaning) {
            line += letter;
            line += letter == '\n' ? std::string(HELP_COLUMN, ' ') : "";
        }
        text += line + "\n";
    };
    for (const Option& option : options) {
        if (!option.meaning.empty()) {
            explain(option, option.meaning);
        }
    }
    explain({"help", 'h', "", "", {}}, "show this text");
    explain({"version", 'V', "", "", {}}, "show which version this is");
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
