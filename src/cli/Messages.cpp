#include "cli/Messages.h"

#include "cli/CommandError.h"
#include "json/JsonCoding.h"

#include <iostream>

namespace pointloom::cli {

void sayOnStandardError(std::string_view message) {
    std::cerr << programName << ": " << json::printable(message, message.size()) << std::endl;
}

QString bareText(const QString& text) {
    const std::string utf8 = text.toStdString();
    return QString::fromStdString(json::printable(utf8, utf8.size()));
}

void say(const Remarks& remarks) {
    for (const QString& note : remarks.notes)
        sayOnStandardError("note: " + note.toStdString());
    for (const QString& warning : remarks.warnings)
        sayOnStandardError("warning: " + warning.toStdString());
}

void print(std::string_view text) {
    std::cout << text;
}

void printJson(const json::OrderedValue& value) {
    constexpr int indent = 2;
    std::cout << value.dump(indent) << '\n';
}

void finishPrinting() {
    if (!std::cout.flush())
        throw CommandError("cannot write to standard output");
}

}
