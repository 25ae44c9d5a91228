#include "json/JsonDocument.h"

#include <algorithm>

namespace pointloom::json {

namespace {

std::string placeInText(const QByteArray& bytes, std::size_t byte) {
    const auto end = bytes.begin() + std::min<qsizetype>(bytes.size(), static_cast<qsizetype>(byte));
    const auto line = 1 + std::count(bytes.begin(), end, '\n');
    const auto lineStart = std::find(std::make_reverse_iterator(end), bytes.rend(), '\n').base();
    return "line " + std::to_string(line) + ", column " +
           std::to_string(std::max<qsizetype>(1, end - lineStart));
}

// The library's text reads "[json.exception...] parse error at ...: syntax error while ... - REASON".
std::string reasonOf(const nlohmann::json::exception& error) {
    const std::string_view text = error.what();
    const auto dash = text.find(" - "); // the first: what was last read may hold another
    const auto reason =
        dash == std::string_view::npos ? text.substr(text.rfind(": ") + 2) : text.substr(dash + 3);
    // It quotes bytes that need not be UTF-8.
    const auto quoted = QString::fromUtf8(reason.data(), static_cast<qsizetype>(reason.size()));
    return printable(quoted.toStdString());
}

// The library's text ends in "number overflow parsing '1e400'".
std::string overflowingNumber(const nlohmann::json::exception& error) {
    std::string_view text = error.what();
    text.remove_prefix(std::min(text.size(), text.find('\'') + 1));
    return printable(text.substr(0, text.rfind('\'')));
}

}

// A scan of its own: the library's parser with a callback takes quadratic time on long lists.
void requireWithin(const ParseLimits& limits, const QByteArray& bytes) {
    if (bytes.size() > limits.bytes)
        throw DecodingError("larger than " + std::to_string(limits.bytes / (1024 * 1024)) + " MB");
    int depth = 0;
    std::int64_t values = 1;
    bool isInText = false;
    char before = ' '; // last character outside of texts and white space
    for (auto at = bytes.begin(); at != bytes.end(); ++at) {
        if (isInText) {
            if (*at == '\\' && at + 1 != bytes.end())
                ++at; // the escaped character may be a quote
            else if (*at == '"')
                isInText = false;
            continue;
        }
        if (*at == ' ' || *at == '\n' || *at == '\r' || *at == '\t')
            continue;
        const bool isOpening = *at == '[' || *at == '{';
        const bool isClosing = *at == ']' || *at == '}';
        isInText = *at == '"';
        depth += isOpening - isClosing;
        // An object or a list has one value more than commas, unless it is empty.
        values += *at == ',' || (isClosing && before != '[' && before != '{');
        before = *at;
        if (depth > limits.depth)
            throw DecodingError("nested deeper than " + std::to_string(limits.depth) + " levels");
        if (values > limits.values)
            throw DecodingError("more than " + std::to_string(limits.values) + " values");
    }
}

Value parse(const QByteArray& bytes, const ParseLimits& limits) {
    requireWithin(limits, bytes);
    try {
        return Value::parse(bytes.begin(), bytes.end());
    } catch (const Value::parse_error& error) {
        throw DecodingError(placeInText(bytes, error.byte) + ": not valid JSON: " + reasonOf(error));
    } catch (const Value::out_of_range& error) {
        throw DecodingError("a number is too large: " + overflowingNumber(error));
    }
}

QByteArray compact(const OrderedValue& value) {
    return QByteArray::fromStdString(value.dump());
}

QByteArray prettySorted(const OrderedValue& value) {
    constexpr int indent = 2;
    return QByteArray::fromStdString(Value(value).dump(indent)) + '\n';
}

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
