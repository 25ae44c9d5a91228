// Text of tables as spreadsheets and scouting programs write it: encodings, lines, fields, times.
#pragma once

#include "l10n/L10nKey.h"

#include <functional>
#include <optional>
#include <QByteArray>
#include <QString>
#include <QStringView>
#include <vector>

namespace pointloom {

/// A line of a file that gave nothing, and why, as a text that continues "line 7: ".
struct LineFault {
    qint64 line = 0; // counted from 1
    L10nKey reason{};

    bool operator==(const LineFault&) const = default;
};

namespace DelimitedText {

/// Decodes by the byte order mark (UTF-8, UTF-16), else as UTF-8, else by the Windows code page `codePage`;
/// when that is 0 or unknown, by 1250 or 1252, whichever gives words. Empty when the result is no text.
std::optional<QString> decode(QByteArray bytes, int codePage = 0);

QStringView trimmed(QStringView text); // without spaces and tabs at both ends

/// Visits the lines that hold more than spaces and tabs, with their numbers. A vertical tab, a form feed and
/// the separators of Unicode end a line too, but editors do not count it.
void forEachLine(QStringView text, const std::function<void(QStringView line, qint64 number)>& visit);

/// Fields without spaces and quotes around them. In quotes the separator is text, and "" is one quote.
std::vector<QString> quotedFields(QStringView line, QChar separator);

/// Seconds from "12.5", "12,5", "2:05" or "1:02:05,5".
std::optional<double> parseTime(const QString& field);

/// True for a first line that names its columns: its first field is no number.
bool isHeading(QStringView firstField);

}

}
