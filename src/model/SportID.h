// The sports and what the wizard offers for each.
#pragma once

#include "json/RawValues.h"

#include <cstdint>
#include <QString>
#include <span>

namespace pointloom {

enum class SportID { tennis, padel, volleyball, badminton, tableTennis, squash, pickleball };

template <>
struct RawValues<SportID> {
    static constexpr auto table = std::to_array<std::pair<SportID, std::string_view>>({
        {SportID::tennis, "tennis"},
        {SportID::padel, "padel"},
        {SportID::volleyball, "volleyball"},
        {SportID::badminton, "badminton"},
        {SportID::tableTennis, "tableTennis"},
        {SportID::squash, "squash"},
        {SportID::pickleball, "pickleball"},
    });
};

QString displayName(SportID sport);

/// One emoji; padel shares the tennis ball.
QString emoji(SportID sport);

/// Name of the sport's picture among the application's resources.
QString imageName(SportID sport);

/// True for the sports that count 15, 30, 40 inside sets; all others count plain points.
bool usesTennisScoring(SportID sport);

bool supportsDoubles(SportID sport);

/// The set counts ("best of N") that a match can have, in the order in which they are offered.
std::span<const std::int64_t> numberOfSetsOptions(SportID sport);

std::int64_t defaultNumberOfSets(SportID sport);

}
