#include "l10n/UiText.h"

namespace pointloom {

QString t(Language language, const UiText& text) {
    switch (language) {
    case Language::english:
        return QString::fromUtf8(text.english);
    case Language::french:
        return QString::fromUtf8(text.french);
    case Language::spanish:
        return QString::fromUtf8(text.spanish);
    case Language::italian:
        return QString::fromUtf8(text.italian);
    case Language::german:
        return QString::fromUtf8(text.german);
    case Language::swedish:
        return QString::fromUtf8(text.swedish);
    case Language::portuguese:
        return QString::fromUtf8(text.portuguese);
    }
    Q_UNREACHABLE();
}

}
