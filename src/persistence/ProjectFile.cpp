#include "persistence/ProjectFile.h"

#include "persistence/DocumentFile.h"
#include "json/JsonDocument.h"

#include <algorithm>

namespace pointloom {

namespace {

bool isTaggedScore(const json::Value& score) {
    return score.is_object() && (score.contains("type") || score.contains("score"));
}

// Only the current format tags its scores with their family, and only it has the scale.
bool hasCurrentForm(const json::Value& document) {
    if (!document.is_object())
        return false;
    if (document.contains("scoreboardUserScale"))
        return true;
    if (const auto initial = document.find("initialScore");
        initial != document.end() && isTaggedScore(*initial))
        return true;
    const auto markers = document.find("markers");
    return markers != document.end() && markers->is_array() &&
           std::any_of(markers->begin(), markers->end(), [](const json::Value& marker) {
               return marker.is_object() && marker.contains("score") && isTaggedScore(marker["score"]);
           });
}

ProjectFile decodeEitherFormat(const json::Value& document) {
    std::optional<json::DecodingError> faultAsCurrent;
    try {
        return json::decode<ProjectFile>(document);
    } catch (const json::DecodingError& fault) {
        faultAsCurrent = fault;
    }
    try {
        return ProjectFile::migrating(json::decode<LegacyProjectFile>(document));
    } catch (const json::DecodingError&) {
        if (hasCurrentForm(document))
            throw *faultAsCurrent;
        throw;
    }
}

}

ProjectFile ProjectFile::load(const QString& path) {
    return decode(readDocument(path, json::ParseLimits().bytes), path);
}

ProjectFile ProjectFile::decode(const QByteArray& bytes, const QString& path) {
    try {
        return decodeEitherFormat(json::parse(bytes));
    } catch (const json::DecodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    }
}

ProjectFile ProjectFile::migrating(const LegacyProjectFile& legacy) {
    return {legacy.migrated(), legacy.version.value_or(1), legacy.selectedSport, std::nullopt,
            legacy.videoPath};
}

void ProjectFile::save(const QString& path) const {
    QByteArray text;
    try {
        text = json::prettySorted(json::encode(*this));
        json::requireWithin({}, text);
    } catch (const json::EncodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    } catch (const json::DecodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    }
    writeDocument(path, text);
}

}
