#include "ui/common/Preferences.h"

#include "persistence/UserDefaults.h"
#include "ui/common/KeyFile.h"
#include "ui/common/UiContext.h"

namespace pointloom::Preferences {

namespace {

template <class Choice>
std::optional<Choice> choice(const UserDefaults& defaults, std::string_view key) noexcept {
    return fromRawValue<Choice>(remembered(defaults, key).toStdString());
}

}

QByteArray remembered(const UserDefaults& defaults, std::string_view key) noexcept {
    try {
        return defaults.data(key).value_or(QByteArray());
    } catch (const std::exception&) {
        return {};
    }
}

void remember(UserDefaults& defaults, std::string_view key, const QByteArray& value) noexcept {
    try {
        defaults.setData(key, value);
    } catch (const std::exception&) {
        // The next start finds the value before.
    }
}

std::optional<Language> language(const UserDefaults& defaults) noexcept {
    return choice<Language>(defaults, languageKey);
}

Language firstLanguage(const UserDefaults& defaults, const QStringList& names) {
    if (const auto chosen = language(defaults))
        return *chosen;
    for (const QString& name : names) {
        const QString language = name.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
        if (const auto known = fromRawValue<Language>(language.toStdString()))
            return *known;
    }
    return Language::english;
}

ThemeChoice theme(const UserDefaults& defaults) noexcept {
    return choice<ThemeChoice>(defaults, themeKey).value_or(ThemeChoice::dark);
}

CommandKeys::Chosen keys(const UserDefaults& defaults) noexcept {
    try {
        return keysFromJson(remembered(defaults, keysKey)).chosen;
    } catch (const std::exception&) {
        return {};
    }
}

bool isSet(const UserDefaults& defaults, std::string_view key) noexcept {
    try {
        return defaults.boolean(key) || (key == quickPicturesKey && !defaults.data(key));
    } catch (const std::exception&) {
        return false;
    }
}

void chooseLanguage(const UiContext& context, Language language) {
    context.state.language = language;
    context.state.save();
    const std::string_view raw = rawValue(language);
    context.defaults.setData(languageKey, QByteArray(raw.data(), static_cast<qsizetype>(raw.size())));
}

void chooseKeys(const UiContext& context, const CommandKeys::Chosen& chosen) {
    context.keys.choose(chosen);
    if (chosen.empty())
        context.defaults.remove(keysKey);
    else
        context.defaults.setData(keysKey, keysAsJson(chosen));
}

}
