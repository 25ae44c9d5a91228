#include "app/FirstLanguage.h"

namespace pointloom {

Language firstLanguage(const QStringList& names) {
    for (const QString& name : names) {
        const QString language = name.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
        if (const auto known = fromRawValue<Language>(language.toStdString()))
            return *known;
    }
    return Language::english;
}

}
