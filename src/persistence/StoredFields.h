// The fields that project documents and the stored session consist of, each listed once with the property of
// the session that it stores. JSON, reading from the session, restoring and watching follow from the list.
#pragma once

#include "session/AppState.h"

#include <concepts>
#include <tuple>

namespace pointloom {

/// The values in every form of document and session, besides the scores.
struct StoredValues {
    std::optional<TemplateID> selectedTemplate;
    std::optional<MatchConfig> matchConfig;
    double scoreboardPositionX = 0;       // fraction of the picture's width, as stored
    double scoreboardPositionY = 0;       // fraction of the picture's height, as stored
    double trimStart = 0;                 // seconds
    std::optional<double> trimEnd;        // seconds; absent: the end of the video
    std::optional<QString> watermarkPath; // paths are plain and absolute, never URLs
    std::optional<WatermarkCorner> watermarkCorner;

    bool operator==(const StoredValues&) const = default;

    /// The position to draw with: as stored, or the default when either part is above 1, as in files that
    /// stored points instead of fractions.
    QPointF scoreboardPosition() const;
};

/// `Score` is SportScoreState. In the older forms, from before there were other sports than tennis, it is
/// ScoreState; they are only read.
template <class Score>
struct StoredProject : StoredValues {
    std::vector<MarkerOf<Score>> markers;
    std::optional<Score> initialScore; // before the first marker

    bool operator==(const StoredProject&) const = default;

    /// The same values in the current form.
    StoredProject<SportScoreState> migrated() const {
        StoredProject<SportScoreState> current{*this, {}, initialScore};
        for (const auto& marker : markers)
            current.markers.push_back({marker.id, marker.startTime, marker.score, marker.label});
        return current;
    }
};

using LegacyMarker = MarkerOf<ScoreState>;

/// One field of a record, with the property of the session that it stores.
template <class Record, class Member, class Property>
struct StoredField : json::Field<Record, Member> {
    Property AppState::*property;
};

/// The fields that `Record` has, in the order in which they are written.
template <class Record>
constexpr auto storedFields() {
// A tuple of one field, or an empty one when the record has no member of that name.
#define POINTLOOM_FIELD(name)                                                                                \
    [] {                                                                                                     \
        if constexpr (requires { &Record::name; })                                                           \
            return std::tuple{json::Field<Record, decltype(Record::name)>{#name, &Record::name}};            \
        else                                                                                                 \
            return std::tuple{};                                                                             \
    }()
#define POINTLOOM_STORED_FIELD(name, property)                                                               \
    [] {                                                                                                     \
        if constexpr (requires { &Record::name; })                                                           \
            return std::tuple{StoredField<Record, decltype(Record::name), decltype(AppState::property)>{     \
                {#name, &Record::name}, &AppState::property}};                                               \
        else                                                                                                 \
            return std::tuple{};                                                                             \
    }()
    return std::tuple_cat(
        POINTLOOM_FIELD(version), POINTLOOM_STORED_FIELD(selectedSport, selectedSport),
        POINTLOOM_STORED_FIELD(selectedTemplate, selectedTemplate),
        POINTLOOM_STORED_FIELD(matchConfig, matchConfig), POINTLOOM_STORED_FIELD(rules, rules),
        POINTLOOM_STORED_FIELD(markers, markers), POINTLOOM_STORED_FIELD(cuts, cuts),
        POINTLOOM_STORED_FIELD(initialScore, initialScore),
        POINTLOOM_STORED_FIELD(scoreboardPositionX, scoreboardPosition), POINTLOOM_FIELD(scoreboardPositionY),
        POINTLOOM_STORED_FIELD(scoreboardUserScale, scoreboardUserScale),
        POINTLOOM_STORED_FIELD(trimStart, trimStart), POINTLOOM_STORED_FIELD(trimEnd, trimEnd),
        POINTLOOM_STORED_FIELD(parts, parts), POINTLOOM_STORED_FIELD(language, language),
        POINTLOOM_STORED_FIELD(watermarkPath, watermarkURL),
        POINTLOOM_STORED_FIELD(watermarkCorner, watermarkCorner),
        POINTLOOM_STORED_FIELD(videoFiles, videoFiles), POINTLOOM_STORED_FIELD(videoPath, videoURL));
#undef POINTLOOM_STORED_FIELD
#undef POINTLOOM_FIELD
}

/// Calls `use` with each field of the record that stores a property.
template <class Record, class Use>
void forEachStoredField(const Use& use) {
    const auto useIfStored = [&](const auto& field) {
        if constexpr (requires { field.property; })
            use(field);
    };
    std::apply([&](const auto&... fields) { (useIfStored(fields), ...); }, storedFields<Record>());
}

namespace StoredValue {

// From a property's value to a record's field and back. An absent field leaves the property as it is, unless
// the property may be absent itself. The two parts of the position are one property: copied apart from these.

template <class Value>
void read(const Value& value, Value& field) {
    field = value;
}
template <class Value>
void read(const Value& value, std::optional<Value>& field) {
    field = value;
}
void read(const std::optional<QUrl>& value, std::optional<QString>& field);
void read(const std::vector<std::string>& value,
          std::optional<std::vector<std::string>>& field); // none: absent
void read(const std::vector<QString>& value,
          std::optional<std::vector<QString>>& field);                // fewer than two: absent
void read(const PartChoice& value, std::optional<PartChoice>& field); // the default: absent
inline void read(const QPointF&, double&) {}

template <class Value>
void restore(const Value& field, QProperty<Value>& property) {
    property = field;
}
template <class Value>
void restore(const std::optional<Value>& field, QProperty<Value>& property) {
    if (field)
        property = *field;
}
void restore(const std::vector<Marker>& field, QProperty<std::vector<Marker>>& property); // sorted by time
void restore(const std::optional<QString>& field, QProperty<std::optional<QUrl>>& property);
inline void restore(const double&, QProperty<QPointF>&) {}

}

/// The record of the session.
template <class Record>
Record recordOf(const AppState& state) {
    Record record;
    forEachStoredField<Record>(
        [&](const auto& field) { StoredValue::read((state.*field.property).value(), record.*field.member); });
    const QPointF position = state.scoreboardPosition;
    record.scoreboardPositionX = position.x();
    record.scoreboardPositionY = position.y();
    return record;
}

/// Assigns the record's fields to the session; an absent one leaves what a fresh session has.
template <class Record>
void restoreRecord(const Record& record, AppState& into) {
    forEachStoredField<Record>(
        [&](const auto& field) { StoredValue::restore(record.*field.member, into.*field.property); });
    into.scoreboardPosition = record.scoreboardPosition();
}

}
