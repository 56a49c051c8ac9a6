#pragma once

#include <map>
#include <string>

/// Named numbers from a text file: pairs of a name and a decimal number, separated by any white space.
/// The last value given for a name counts. Names are case-sensitive.
class Settings {
public:
    /// Reads the whole file. One that cannot be read is reported on standard error and answers nothing; so is
    /// each pair whose value is no number, which is then left out.
    explicit Settings(const std::string& fileName);

    /// The value that the file gave, or the default.
    float getSetting(const std::string& settingName, float defaultValue) const;

private:
    std::map<std::string, float> settings;
};
