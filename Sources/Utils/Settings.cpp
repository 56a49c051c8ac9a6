#include "Utils/Settings.h"

#include <fstream>
#include <iostream>
#include <sstream>

Settings::Settings(const std::string& fileName) {
    std::ifstream file(fileName);
    std::string name;
    std::string token;
    while (file >> name) {
        if (!(file >> token)) {
            std::cerr << "The setting '" << name << "' has no value" << std::endl;
            break;
        }
        std::istringstream number(token);
        float value = 0;
        if (number >> value && number.peek() == std::istringstream::traits_type::eof()) {
            settings[name] = value;
        } else {
            std::cerr << "The setting '" << name << "' is not a number: '" << token << "'" << std::endl;
        }
    }
    if (!file.is_open() || file.bad()) {
        std::cerr << "Fail to open the setting file" << std::endl;
    }
}

float Settings::getSetting(const std::string& settingName, float defaultValue) const {
    const auto found = settings.find(settingName);
    return found == settings.end() ? defaultValue : found->second;
}
