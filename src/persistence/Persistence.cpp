#include "persistence/Persistence.h"

#include "model/ScoringEngine.h"
#include "persistence/AtomicFile.h"
#include "session/AppState.h"
#include "json/JsonWriter.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <utility>

namespace pointloom {

namespace {

template <class Record>
std::optional<Record> decodeIfFits(const QByteArray& bytes) {
    try {
        return json::decode<Record>(json::parse(bytes));
    } catch (const json::DecodingError&) {
        return std::nullopt;
    }
}

/// False as well for what reads as the older form only because that form knows too little: the session of a
/// newer version with a sport of its own.
bool isReadWhole(const QByteArray& bytes) {
    if (decodeIfFits<Persistence::Snapshot>(bytes))
        return true;
    return decodeIfFits<Persistence::LegacySnapshot>(bytes) && !json::parse(bytes).contains("selectedSport");
}

}

Persistence::Persistence(UserDefaults& defaults, const SessionLock&, std::chrono::milliseconds retryInterval)
    : m_defaults(defaults) {
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryInterval);
    QObject::connect(&m_retry, &QTimer::timeout, &m_retry, [this] { retry(); });
}

void Persistence::save(const AppState& state) noexcept {
    attempt([this, &state] { store(state); });
}

void Persistence::clear() noexcept {
    attempt([this] { removeStored(); });
}

void Persistence::retry() noexcept {
    if (m_failed)
        attempt(m_failed);
}

void Persistence::attempt(Change change) noexcept {
    m_failed = nullptr;
    m_retry.stop();
    try {
        change();
    } catch (const FileError&) {
        m_failed = std::move(change);
        m_retry.start();
    } catch (const std::exception&) {
        // Not the disk's fault: the same session would fail again. The next edit tries with all of it.
    }
}

void Persistence::store(const AppState& state) {
    const QByteArray bytes = json::write(Snapshot::of(state));
    json::requireWithin({}, bytes);
    setAsideWhatCannotBeRead();
    m_defaults.setData(sessionKey, bytes);
}

void Persistence::removeStored() {
    setAsideWhatCannotBeRead();
    m_defaults.remove(sessionKey);
}

void Persistence::load(AppState& into) noexcept {
    try {
        const auto stored = m_defaults.data(sessionKey);
        if (!stored)
            return;
        if (const auto snapshot = decodeIfFits<Snapshot>(*stored)) {
            m_isStoredValueOurs = true;
            snapshot->restore(into);
            into.scoreboardUserScale = 1.0;
        } else if (const auto legacy = decodeIfFits<LegacySnapshot>(*stored)) {
            legacy->migrated().restore(into);
            save(into);
        }
    } catch (const std::exception&) {
        // As with nothing stored.
    }
}

void Persistence::setAsideWhatCannotBeRead() {
    if (m_isStoredValueOurs)
        return;
    const auto stored = m_defaults.data(sessionKey);
    if (stored && !isReadWhole(*stored)) {
        // Named by its content, so that each such value is kept, and kept once.
        const QByteArray digest =
            QCryptographicHash::hash(*stored, QCryptographicHash::Sha256).toHex().first(16);
        const QString folder = QFileInfo(m_defaults.path()).absolutePath();
        const QString copy = folder + QStringLiteral("/unreadable-session-") + QString::fromLatin1(digest) +
                             QStringLiteral(".json");
        const FolderGuard guard(folder);
        if (AtomicFile::read(copy) != *stored)
            AtomicFile::write(copy, *stored);
    }
    m_isStoredValueOurs = true;
}

Persistence::Snapshot Persistence::Snapshot::of(const AppState& state) {
    const QPointF position = state.scoreboardPosition;
    const auto& watermark = state.watermarkURL.value();
    return {.selectedSport = state.selectedSport.value(),
            .selectedTemplate = state.selectedTemplate.value(),
            .matchConfig = state.matchConfig.value(),
            .markers = state.markers.value(),
            .cuts = state.cuts.value(),
            .initialScore = state.initialScore.value(),
            .scoreboardPositionX = position.x(),
            .scoreboardPositionY = position.y(),
            .scoreboardUserScale = state.scoreboardUserScale.value(),
            .trimStart = state.trimStart.value(),
            .trimEnd = state.trimEnd.value(),
            .language = state.language.value(),
            .watermarkPath = watermark ? std::optional(watermark->path(QUrl::FullyDecoded)) : std::nullopt,
            .watermarkCorner = state.watermarkCorner.value()};
}

void Persistence::Snapshot::restore(AppState& into) const {
    into.selectedSport = selectedSport.value_or(SportID::tennis);
    into.selectedTemplate = selectedTemplate;
    into.matchConfig = matchConfig;
    into.markers = ScoringEngine::sortedByTime(markers);
    into.cuts = cuts;
    into.initialScore = initialScore;
    // Positions used to be stored in points.
    const bool isFraction = scoreboardPositionX <= 1.0 && scoreboardPositionY <= 1.0;
    into.scoreboardPosition =
        isFraction ? QPointF(scoreboardPositionX, scoreboardPositionY) : AppState::defaultScoreboardPosition;
    into.trimStart = trimStart;
    into.trimEnd = trimEnd;
    if (language)
        into.language = *language;
    if (watermarkPath)
        into.watermarkURL = QUrl::fromLocalFile(*watermarkPath);
    if (watermarkCorner)
        into.watermarkCorner = *watermarkCorner;
    into.step = Screen::sport;
}

Persistence::Snapshot Persistence::LegacySnapshot::migrated() const {
    Snapshot current{.selectedSport = std::nullopt,
                     .selectedTemplate = selectedTemplate,
                     .matchConfig = matchConfig,
                     .markers = {},
                     .cuts = cuts,
                     .initialScore = initialScore,
                     .scoreboardPositionX = scoreboardPositionX,
                     .scoreboardPositionY = scoreboardPositionY,
                     .scoreboardUserScale = std::nullopt,
                     .trimStart = trimStart,
                     .trimEnd = trimEnd,
                     .language = language,
                     .watermarkPath = watermarkPath,
                     .watermarkCorner = watermarkCorner};
    for (const LegacyMarker& marker : markers)
        current.markers.push_back(marker.migrated());
    return current;
}

}
