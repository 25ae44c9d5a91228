#include "app/QtTexts.h"

#include "session/AppState.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace pointloom {

QtTexts::QtTexts(AppState& state) {
    m_bindings.watch(state.language, [this, &state] {
        QCoreApplication::removeTranslator(&m_translator);
        const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        // Some languages have only the file of earlier versions, "qt".
        for (const char* file : {"qtbase", "qt"}) {
            if (m_translator.load(localeOf(state.language), QLatin1String(file), QStringLiteral("_"),
                                  folder)) {
                QCoreApplication::installTranslator(&m_translator);
                return;
            }
        }
    });
}

}
