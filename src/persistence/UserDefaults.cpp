#include "persistence/UserDefaults.h"

#include "persistence/SessionLock.h"

#include <algorithm>
#include <QByteArrayView>
#include <QFileInfo>
#include <QSettings>

namespace pointloom {

namespace IniText {

namespace {

constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
constexpr QByteArrayView dataPrefix("@ByteArray(");

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int hexValue(char c) {
    if (c <= '9')
        return c - '0';
    return (c | 0x20) - 'a' + 10;
}

/// Iterates over the lines of a text and tells which of them are top-level values.
class LineReader {
public:
    explicit LineReader(QByteArrayView text)
        : m_rest(text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text) {}

    bool next() {
        if (m_rest.isEmpty())
            return false;
        const qsizetype end = m_rest.indexOf('\n');
        line = end < 0 ? m_rest : m_rest.first(end + 1);
        m_rest = m_rest.sliced(line.size());
        const QByteArrayView content = line.trimmed();
        isGeneralHeader = false;
        if (content.startsWith('[') && content.endsWith(']')) {
            const QByteArrayView name = content.sliced(1, content.size() - 2).trimmed();
            isGeneralHeader = name.compare("general", Qt::CaseInsensitive) == 0;
            m_isTopLevel = isGeneralHeader;
        }
        return true;
    }

    bool holds(std::string_view key) const {
        const qsizetype equals = line.indexOf('=');
        return m_isTopLevel && equals >= 0 && line.first(equals).trimmed() == QByteArrayView(key);
    }

    QByteArrayView value() const { return line.sliced(line.indexOf('=') + 1).trimmed(); }

    QByteArrayView line; // with its line break
    bool isGeneralHeader = false;

private:
    QByteArrayView m_rest;
    bool m_isTopLevel = true; // as is text before the first section
};

QByteArray unescaped(QByteArrayView text) {
    QByteArray result;
    result.reserve(text.size());
    bool inQuotes = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            inQuotes = !inQuotes;
            continue;
        }
        if (c == ';' && !inQuotes)
            break; // a comment
        if (c != '\\' || i + 1 == text.size()) {
            result.append(c);
            continue;
        }
        const char escape = text[++i];
        if (escape == 'x') {
            int code = 0;
            while (i + 1 < text.size() && isHexDigit(text[i + 1]))
                code = (code * 16 + hexValue(text[++i])) & 0xFF;
            result.append(static_cast<char>(code));
        } else if (escape >= '0' && escape <= '7') {
            int code = escape - '0';
            while (i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '7')
                code = (code * 8 + text[++i] - '0') & 0xFF;
            result.append(static_cast<char>(code));
        } else {
            constexpr QByteArrayView letters("abfnrtv");
            constexpr QByteArrayView meanings("\a\b\f\n\r\t\v");
            const qsizetype letter = letters.indexOf(escape);
            result.append(letter < 0 ? escape : meanings[letter]);
        }
    }
    return result;
}

// Writes through a pointer for speed: a session has hundreds of thousands of characters.
QByteArray quoted(const QByteArray& bytes) {
    constexpr qsizetype longestEscape = 4;
    QByteArray result(bytes.size() * longestEscape + 2, Qt::Uninitialized);
    char* out = result.data();
    *out++ = '"';
    bool afterHexEscape = false; // which takes every hexadecimal digit that follows
    for (const char c : bytes) {
        const bool isPrintable = c >= 0x20 && c < 0x7F;
        if (!isPrintable || (afterHexEscape && isHexDigit(c))) {
            constexpr char digits[] = "0123456789abcdef";
            const auto code = static_cast<unsigned char>(c);
            for (const char escaped : {'\\', 'x', digits[code >> 4], digits[code & 0xF]})
                *out++ = escaped;
            afterHexEscape = true;
            continue;
        }
        afterHexEscape = false;
        if (c == '"' || c == '\\')
            *out++ = '\\';
        *out++ = c;
    }
    *out++ = '"';
    result.truncate(out - result.constData());
    return result;
}

}

bool isPlainKey(std::string_view key) {
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               c == '-' || c == '.';
    };
    return !key.empty() && std::ranges::all_of(key, isPlain);
}

std::optional<QByteArray> value(const QByteArray& text, std::string_view key) {
    std::optional<QByteArrayView> found;
    LineReader reader(text);
    while (reader.next()) {
        if (reader.holds(key))
            found = reader.value();
    }
    return found ? std::optional(unescaped(*found)) : std::nullopt;
}

QByteArray withValue(const QByteArray& text, std::string_view key, const std::optional<QByteArray>& value) {
    QByteArray newLine;
    if (value)
        newLine =
            QByteArray(QByteArrayView(key).data(), QByteArrayView(key).size()) + '=' + quoted(*value) + '\n';

    QByteArray result;
    result.reserve(text.size() + newLine.size());
    qsizetype afterHeader = -1; // in `result`
    bool isPlaced = false;
    LineReader reader(text);
    while (reader.next()) {
        if (reader.holds(key)) {
            if (!isPlaced)
                result.append(newLine);
            isPlaced = true;
            continue;
        }
        result.append(reader.line);
        if (reader.isGeneralHeader && afterHeader < 0) {
            if (!result.endsWith('\n'))
                result.append('\n');
            afterHeader = result.size();
        }
    }
    if (isPlaced || newLine.isEmpty())
        return result;
    if (afterHeader < 0)
        return QByteArrayLiteral("[General]\n") + newLine + (result.isEmpty() ? QByteArray() : '\n' + result);
    return result.insert(afterHeader, newLine);
}

QByteArray fromData(const QByteArray& bytes) {
    return dataPrefix.toByteArray() + bytes + ')';
}

QByteArray toData(const QByteArray& value) {
    if (!value.startsWith(dataPrefix) || !value.endsWith(')'))
        return value;
    return value.sliced(dataPrefix.size(), value.size() - dataPrefix.size() - 1);
}

}

QString UserDefaults::standardPath() {
    const QString name = QStringLiteral("Pointloom");
    return QSettings(QSettings::IniFormat, QSettings::UserScope, name, name).fileName();
}

UserDefaults::UserDefaults(QString path)
    : m_path(std::move(path)) {}

std::optional<QByteArray> UserDefaults::data(std::string_view key) const {
    const auto value = IniText::value(AtomicFile::read(m_path), key);
    return value ? std::optional(IniText::toData(*value)) : std::nullopt;
}

bool UserDefaults::boolean(std::string_view key) const {
    const auto value = IniText::value(AtomicFile::read(m_path), key);
    return value && (*value == "true" || *value == "1");
}

void UserDefaults::setData(std::string_view key, const QByteArray& bytes) {
    store(key, IniText::fromData(bytes));
}

void UserDefaults::setBoolean(std::string_view key, bool value) {
    store(key, QByteArray(value ? "true" : "false"));
}

void UserDefaults::remove(std::string_view key) {
    if (QFileInfo::exists(m_path))
        store(key, std::nullopt);
}

void UserDefaults::store(std::string_view key, const std::optional<QByteArray>& value) {
    Q_ASSERT(IniText::isPlainKey(key));
    const QString folder = QFileInfo(m_path).absolutePath();
    AtomicFile::createFolder(folder);
    // Held from reading to writing: another process may set another key.
    const FolderGuard guard(folder);
    AtomicFile::write(m_path, IniText::withValue(AtomicFile::read(m_path), key, value));
}

}
