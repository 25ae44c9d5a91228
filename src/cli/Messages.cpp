#include "cli/Messages.h"

#include "json/JsonCoding.h"

#include <iostream>

namespace pointloom::cli {

namespace {

QString counted(std::int64_t count, const char* one, const char* many) {
    return QStringLiteral("%1 %2").arg(count).arg(QString::fromUtf8(count == 1 ? one : many));
}

QString missingEnd(double seconds) {
    constexpr double shortest = 0.1; // that one decimal can say
    if (seconds < shortest)
        return QStringLiteral("the very end of the video is missing");
    return QStringLiteral("the last %1 s of the video are missing").arg(seconds, 0, 'f', 1);
}

}

void sayOnStandardError(std::string_view message) {
    std::cerr << programName << ": " << json::printable(message, message.size()) << std::endl;
}

QString bareText(const QString& text) {
    const std::string utf8 = text.toStdString();
    return QString::fromStdString(json::printable(utf8, utf8.size()));
}

void say(const Remarks& remarks, const QString& prefix) {
    for (const QString& note : remarks.notes)
        sayNote(prefix + note);
    for (const QString& warning : remarks.warnings)
        sayWarning(prefix + warning);
}

void sayNote(const QString& note) {
    sayOnStandardError("note: " + note.toStdString());
}

void sayWarning(const QString& warning) {
    sayOnStandardError("warning: " + warning.toStdString());
}

std::optional<QString> damageWarning(const media::Damage& damage) {
    QStringList parts;
    if (damage.lostFrames > 0)
        parts += counted(damage.lostFrames, "damaged picture was left out", "damaged pictures were left out");
    if (damage.faultyFrames > 0)
        parts += counted(damage.faultyFrames, "picture shows damage", "pictures show damage");
    if (damage.secondsMissing > 0)
        parts += missingEnd(damage.secondsMissing);
    if (parts.isEmpty())
        return std::nullopt;
    const QString last = parts.takeLast();
    return parts.isEmpty() ? last : parts.join(QStringLiteral(", ")) + QStringLiteral(", and ") + last;
}

void say(const ExportReport& report, const QString& prefix) {
    if (const auto warning = damageWarning(report.damage))
        sayWarning(prefix + *warning);
    if (report.captionsFault)
        sayWarning(prefix + QStringLiteral("the video is finished, but its captions are missing: ") +
                   *report.captionsFault);
}

void print(std::string_view text) {
    std::cout << text;
}

void printJson(const json::OrderedValue& value) {
    constexpr int indent = 2;
    std::cout << value.dump(indent) << '\n';
}

json::OrderedValue jsonList(const QStringList& texts) {
    return json::encode(std::vector<QString>(texts.begin(), texts.end()));
}

void finishPrinting() {
    if (!std::cout.flush())
        throw CommandError("cannot write to standard output");
}

}
