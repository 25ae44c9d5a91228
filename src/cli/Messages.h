// What is said on standard error, one line each, and printed on standard output.
#pragma once

#include "json/JsonCoding.h"

#include <QString>
#include <QStringList>
#include <string_view>

namespace pointloom::cli {

constexpr auto programName = "pointloom-cli";

/// "pointloom-cli: " and the message; control characters are replaced.
void sayOnStandardError(std::string_view message);

/// `text` from a file made fit for a terminal: control characters, line breaks too, are replaced.
QString bareText(const QString& text);

/// What a person should know although the command goes on.
struct Remarks {
    QStringList notes;    // what was settled for them
    QStringList warnings; // what the result will lack
};

void say(const Remarks& remarks);

void print(std::string_view text);

/// Indented, keys in the order of writing.
void printJson(const json::OrderedValue& value);

/// Throws CommandError when something printed so far did not arrive.
void finishPrinting();

}
