#include "ui/wizard/SportName.h"

#include "l10n/UiText.h"

namespace pointloom {

namespace {

constexpr UiText tennis{"Tennis", "Tennis", "Tenis", "Tennis", "Tennis", "Tennis", "Ténis"};
constexpr UiText padel{"Padel", "Padel", "Pádel", "Padel", "Padel", "Padel", "Padel"};
constexpr UiText volleyball{"Volleyball", "Volley-ball", "Voleibol", "Pallavolo",
                            "Volleyball", "Volleyboll",  "Voleibol"};
constexpr UiText badminton{"Badminton", "Badminton", "Bádminton", "Badminton",
                           "Badminton", "Badminton", "Badminton"};
constexpr UiText tableTennis{"Table Tennis", "Tennis de table", "Tenis de mesa", "Tennistavolo",
                             "Tischtennis",  "Bordtennis",      "Ténis de mesa"};
constexpr UiText squash{"Squash", "Squash", "Squash", "Squash", "Squash", "Squash", "Squash"};
constexpr UiText pickleball{"Pickleball", "Pickleball", "Pickleball", "Pickleball",
                            "Pickleball", "Pickleball", "Pickleball"};

const UiText& textOf(SportID sport) {
    switch (sport) {
    case SportID::tennis:
        return tennis;
    case SportID::padel:
        return padel;
    case SportID::volleyball:
        return volleyball;
    case SportID::badminton:
        return badminton;
    case SportID::tableTennis:
        return tableTennis;
    case SportID::squash:
        return squash;
    case SportID::pickleball:
        return pickleball;
    }
    Q_UNREACHABLE();
}

}

QString sportName(SportID sport, Language language) {
    return t(language, textOf(sport));
}

}
