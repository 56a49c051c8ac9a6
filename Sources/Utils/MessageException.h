#pragma once

#include <exception>
#include <string>

/// What the exceptions of the program have in common: a text for the person who started it.
class MessageException : public std::exception {
public:
    explicit MessageException(const std::string& message) : message(message) {}

    const char* what() const noexcept override { return message.c_str(); }

protected:
    std::string message;
};
