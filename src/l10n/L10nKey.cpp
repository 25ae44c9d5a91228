#include "l10n/L10nKey.h"

namespace pointloom {

QString caseName(L10nKey key) {
    switch (key) {
#define POINTLOOM_L10N_NAME(name)                                                                            \
    case L10nKey::name:                                                                                      \
        return QStringLiteral(#name);
        POINTLOOM_L10N_KEYS(POINTLOOM_L10N_NAME)
#undef POINTLOOM_L10N_NAME
    }
    return {};
}

}
