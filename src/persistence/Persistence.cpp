#include "persistence/Persistence.h"

#include "json/JsonDocument.h"

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

/// False also for the session of a newer version with a new sport, which fits the older form only because
/// that form has no sport.
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
        // JSON cannot hold the session, or it passes a limit: trying again would fail too, until the next
        // edit.
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
        const auto restore = [&](const Snapshot& session) {
            restoreRecord(session, into);
            into.step = Screen::sport;
        };
        if (auto snapshot = decodeIfFits<Snapshot>(*stored)) {
            m_isStoredValueOurs = true;
            snapshot->scoreboardUserScale = 1.0;
            restore(*snapshot);
        } else if (const auto legacy = decodeIfFits<LegacySnapshot>(*stored)) {
            restore(legacy->migrated());
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

}
