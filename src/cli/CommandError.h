// How a command fails.
#pragma once

#include <QString>
#include <stdexcept>

namespace pointloom::cli {

/// What was asked for cannot be done; `what()` is the one line that the person sees.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    explicit CommandError(const QString& message)
        : std::runtime_error(message.toStdString()) {}
};

/// Arguments that contradict each other.
class UsageError : public CommandError {
public:
    using CommandError::CommandError;
};

}
