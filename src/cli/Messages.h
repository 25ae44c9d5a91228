// Faults of commands, remarks on standard error, one line each, and results on standard output.
#pragma once

#include "export/ExportJob.h"
#include "json/JsonCoding.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <stdexcept>
#include <string_view>

namespace pointloom::cli {

constexpr auto programName = "pointloom-cli";

/// A request that cannot be carried out; `what()` is the one line that the user sees.
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

/// "pointloom-cli: " and the message; control characters are replaced.
void sayOnStandardError(std::string_view message);

/// `text` from a file made fit for a terminal: control characters, line breaks too, are replaced.
QString bareText(const QString& text);

/// Facts that the user should know although the command goes on.
struct Remarks {
    QStringList notes;    // choices made by the program
    QStringList warnings; // what the result will lack
};

/// `prefix` begins each remark.
void say(const Remarks& remarks, const QString& prefix = {});
void sayNote(const QString& note);
void sayWarning(const QString& warning);

/// "12 damaged pictures were left out, and the last 3.2 s of the video are missing"; empty without damage.
std::optional<QString> damageWarning(const media::Damage& damage);

/// Warns of damage and of missing captions, if any.
void say(const ExportReport& report, const QString& prefix = {});

void print(std::string_view text);

/// Indented, keys in the order of writing.
void printJson(const json::OrderedValue& value);

json::OrderedValue jsonList(const QStringList& texts);

/// Throws CommandError when something printed so far did not arrive.
void finishPrinting();

}
