#include "ui/wizard/SportName.h"

#include "l10n/L10nKey.h"

namespace pointloom {

namespace {

L10nKey textOf(SportID sport) {
    switch (sport) {
    case SportID::tennis:
        return L10nKey::sportTennis;
    case SportID::padel:
        return L10nKey::sportPadel;
    case SportID::volleyball:
        return L10nKey::sportVolleyball;
    case SportID::badminton:
        return L10nKey::sportBadminton;
    case SportID::tableTennis:
        return L10nKey::sportTableTennis;
    case SportID::squash:
        return L10nKey::sportSquash;
    case SportID::pickleball:
        return L10nKey::sportPickleball;
    }
    Q_UNREACHABLE();
}

}

QString sportName(SportID sport, Language language) {
    return t(language, textOf(sport));
}

}
