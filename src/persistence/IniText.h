// The top-level values of an INI file in the dialect of QSettings, as pure functions of its text.
// All but the line that is asked for stays byte for byte as it was.
#pragma once

#include <optional>
#include <QByteArray>
#include <string_view>

namespace pointloom::IniText {

/// True for keys that need no escaping: letters, digits, "_", "-" and ".".
bool isPlainKey(std::string_view key);

/// The value of a top-level key (section "General"), quotes and escapes resolved; the last of several.
std::optional<QByteArray> value(const QByteArray& text, std::string_view key);

/// The text with the value set, or without the key when there is no value.
QByteArray withValue(const QByteArray& text, std::string_view key, const std::optional<QByteArray>& value);

/// The form in which QSettings keeps bytes, "@ByteArray(...)", and back; a value of another form is
/// taken as the bytes themselves.
QByteArray fromData(const QByteArray& bytes);
QByteArray toData(const QByteArray& value);

}
