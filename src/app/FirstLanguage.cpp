#include "app/FirstLanguage.h"

#include "ui/common/Preferences.h"

namespace pointloom {

Language firstLanguage(const UserDefaults& defaults, const QStringList& names) {
    if (const auto chosen = Preferences::language(defaults))
        return *chosen;
    for (const QString& name : names) {
        const QString language = name.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
        if (const auto known = fromRawValue<Language>(language.toStdString()))
            return *known;
    }
    return Language::english;
}

}
