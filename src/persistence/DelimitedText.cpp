#include "persistence/DelimitedText.h"

#include "persistence/DecimalNumber.h"

#include <algorithm>
#include <QStringDecoder>
#include <QStringList>

namespace pointloom::DelimitedText {

namespace {

bool isNewline(char16_t character) {
    return (character >= u'\n' && character <= u'\r') // LF, VT, FF, CR
           || character == 0x0085 || character == 0x2028 || character == 0x2029;
}

// Windows-1250 has letters where Windows-1252 has signs such as the superscript one. The letters of these
// that both have in the same places, S and Z with caron, are not used in Western Europe.
int guessedCodePage(const QByteArray& bytes) {
    constexpr std::string_view central = "\x8A\x8D\x8E\x8F\x9A\x9D\x9E\x9F\xA3\xA5\xAF\xB3\xB9\xBC\xBE";
    return std::ranges::any_of(bytes, [&](char c) { return central.find(c) != central.npos; }) ? 1250 : 1252;
}

std::optional<QString> decode(const QByteArray& bytes, QStringDecoder decoder) {
    if (!decoder.isValid())
        return std::nullopt;
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

QStringDecoder decoderOf(int codePage) {
    const QByteArray name = "windows-" + QByteArray::number(codePage);
    return QStringDecoder(name.constData());
}

std::optional<QString> decodeInAnyEncoding(const QByteArray& bytes, int codePage) {
    constexpr auto stateless = QStringDecoder::Flag::Stateless;
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return decode(bytes, QStringDecoder(QStringDecoder::Utf16, stateless));
    if (auto text = decode(bytes, QStringDecoder(QStringDecoder::Utf8, stateless)))
        return text;
    if (codePage > 0) {
        if (auto text = decode(bytes, decoderOf(codePage)))
            return text;
    }
    return decode(bytes, decoderOf(guessedCodePage(bytes)));
}

}

std::optional<QString> decode(QByteArray bytes, int codePage) {
    auto text = decodeInAnyEncoding(bytes, codePage);
    if (!text || text->contains(QChar(u'\0')))
        return std::nullopt;
    if (text->startsWith(QChar::ByteOrderMark))
        text->remove(0, 1);
    return text;
}

QStringView trimmed(QStringView text) {
    const auto isSpace = [](QChar character) { return character == u' ' || character == u'\t'; };
    while (!text.isEmpty() && isSpace(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text;
}

void forEachLine(QStringView text, const std::function<void(QStringView, qint64)>& visit) {
    qint64 number = 1;
    while (!text.isEmpty()) {
        const auto end = std::ranges::find_if(text, [](QChar c) { return isNewline(c.unicode()); });
        if (const QStringView line(text.begin(), end); !trimmed(line).isEmpty())
            visit(line, number);
        if (end == text.end())
            return;
        const QChar newline = *end;
        text = QStringView(end + 1, text.end());
        if (newline == u'\n' || (newline == u'\r' && !text.startsWith(u'\n')))
            ++number;
    }
}

std::vector<QString> quotedFields(QStringView line, QChar separator) {
    std::vector<QString> fields(1);
    bool isQuoted = false;
    bool wasQuoted = false; // spaces in quotes stay
    const auto endField = [&] {
        if (!wasQuoted)
            fields.back() = trimmed(fields.back()).toString();
        wasQuoted = false;
    };
    for (qsizetype at = 0; at < line.size(); ++at) {
        const QChar c = line[at];
        QString& field = fields.back();
        if (isQuoted && c == u'"' && line.sliced(at + 1).startsWith(u'"')) {
            field += c;
            ++at;
        } else if (isQuoted && c == u'"') {
            isQuoted = false;
        } else if (isQuoted) {
            field += c;
        } else if (c == separator) {
            endField();
            fields.emplace_back();
        } else if (c == u'"' && trimmed(field).isEmpty() && !wasQuoted) {
            field.clear();
            isQuoted = wasQuoted = true;
        } else if (!wasQuoted) {
            field += c;
        }
    }
    endField();
    return fields;
}

std::optional<double> parseTime(const QString& field) {
    const QStringList parts = field.split(u':');
    constexpr qsizetype mostParts = 3;
    if (parts.size() > mostParts)
        return std::nullopt;
    const auto seconds = parseDecimal<double>(QString(parts.back()).replace(u',', u'.').toStdString());
    if (parts.size() == 1 || !seconds)
        return seconds;
    constexpr std::int64_t sixty = 60;
    constexpr std::int64_t largest = 1'000'000; // hours or minutes
    double total = 0;
    for (qsizetype i = 0; i + 1 < parts.size(); ++i) {
        const auto number = parseDecimal<std::int64_t>(parts[i].toStdString());
        if (!number || *number < 0 || *number > largest || (i > 0 && *number >= sixty))
            return std::nullopt;
        total = total * sixty + static_cast<double>(*number);
    }
    if (*seconds < 0 || *seconds >= sixty)
        return std::nullopt;
    return total * sixty + *seconds;
}

bool isHeading(QStringView firstField) {
    return std::ranges::none_of(firstField, [](QChar c) { return c.isDigit(); });
}

}
