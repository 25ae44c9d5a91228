#include "json/JsonWriter.h"

namespace pointloom::json {

namespace {

bool needsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscaped(QByteArray& text, char c) {
    if (!needsEscape(c)) {
        text += c;
        return;
    }
    text += '\\';
    constexpr QByteArrayView controls("\b\f\n\r\t");
    constexpr QByteArrayView letters("bfnrt");
    if (c == '"' || c == '\\')
        text += c;
    else if (const qsizetype letter = controls.indexOf(c); letter >= 0)
        text += letters[letter];
    else
        text += "u" + QByteArray::number(c, 16).rightJustified(4, '0');
}

}

void appendQuoted(QByteArray& text, QByteArrayView utf8) {
    text += '"';
    if (std::none_of(utf8.begin(), utf8.end(), needsEscape)) {
        text += utf8;
    } else {
        for (const char c : utf8)
            appendEscaped(text, c);
    }
    text += '"';
}

void Writer<double>::append(QByteArray& text, double value) {
    if (!std::isfinite(value)) {
        static_cast<void>(Codec<double>::encode(value)); // which throws, and says why
        return;
    }
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr; // shortest exact form
    text.append(digits, end - digits);
}

}
