// Choices of the user in the preferences, as they are kept in the settings.
#pragma once

#include "l10n/Language.h"
#include "ui/common/CommandKeys.h"
#include "ui/style/Theme.h"

#include <optional>
#include <QStringList>
#include <string_view>

namespace pointloom {

class UserDefaults;
struct UiContext;

namespace Preferences {

constexpr std::string_view languageKey = "language"; // raw value of a Language
constexpr std::string_view themeKey = "theme";       // raw value of a ThemeChoice
constexpr std::string_view keysKey = "keys";         // as in a file of keys; absent while all are usual
constexpr std::string_view hardwareDecodingKey = "hardwareDecoding";
constexpr std::string_view quickPicturesKey = "quickPictures"; // seek in small copies of slow clips
constexpr std::string_view namesOfMatchKey = "namesOfMatch";   // name new projects after their match
constexpr std::string_view crashReportsKey = "crashReportingEnabled";

// Values that cannot be read are the defaults; none of these functions throws.

/// The value that `remember` stored; empty when there is nothing, and when the settings cannot be read.
QByteArray remembered(const UserDefaults& defaults, std::string_view key) noexcept;
/// Stores a value for the next start. Settings that cannot be written keep the one before.
void remember(UserDefaults& defaults, std::string_view key, const QByteArray& value) noexcept;

/// Empty until one was chosen.
std::optional<Language> language(const UserDefaults& defaults) noexcept;
/// The language that the user chose last. Until one was chosen, the first of `names` ("pt-BR", "de"), which
/// the desktop lists by preference, that the interface has; English when it has none of them.
Language firstLanguage(const UserDefaults& defaults, const QStringList& names);
/// Dark by default.
ThemeChoice theme(const UserDefaults& defaults) noexcept;
/// Those that were chosen.
CommandKeys::Chosen keys(const UserDefaults& defaults) noexcept;
/// Off by default, but for the quick pictures.
bool isSet(const UserDefaults& defaults, std::string_view key) noexcept;

/// Switches the session to `language` and keeps it for every session to come. Throws FileError when it could
/// not be kept; the session is switched all the same.
void chooseLanguage(const UiContext& context, Language language);

/// Uses the keys and keeps them. Throws FileError when they could not be kept; they are used all the same.
void chooseKeys(const UiContext& context, const CommandKeys::Chosen& chosen);

}

}
