// Storage of this machine's licence between runs: the desktop's keychain, or a file where none is running.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <QByteArray>
#include <QString>

namespace pointloom {

constexpr qint64 largestRecord = 256 * 1024; // bytes

class RecordStore {
public:
    using StopQuery = std::function<bool()>; // polled; true ends the wait

    virtual ~RecordStore() = default;

    /// The record saved last; empty only when none is stored. Throws LicenceError when that is not known:
    /// `keychainLocked` while the keychain has not answered (the next call waits for the same answer),
    /// `keychainRefused`, `file`, `cancelled`.
    virtual std::optional<QByteArray> load(const StopQuery& isStopping = {}) = 0;

    /// Replaces the record. A keychain that refused to be read is left as it is. Throws
    /// LicenceError (file) that says why it failed.
    virtual void save(const QByteArray& bytes, const StopQuery& isStopping = {}) = 0;
};

/// A file that only its owner may read.
class FileRecordStore final : public RecordStore {
public:
    explicit FileRecordStore(const QString& path);

    /// "licence.json" in the application's data folder.
    static QString defaultPath();

    bool exists() const; // also when it cannot be read

    std::optional<QByteArray> load(const StopQuery& isStopping = {}) override;
    void save(const QByteArray& bytes, const StopQuery& isStopping = {}) override; // mode 0600, or not at all

private:
    QString m_path;
};

/// The desktop's keychain. An answer comes once the user has unlocked the keychain, or never.
struct Keychain {
    enum class Outcome {
        done,
        nothingThere,
        notRunning,
        refused,
        gaveUp, // waiting for the user; asking again goes on
    };

    struct Answer {
        Outcome outcome = Outcome::refused;
        QByteArray data; // with `done`, of a reading
        QString reason;  // of the keychain, in words; may be empty
    };

    std::function<std::future<Answer>()> read;
    std::function<std::future<Answer>(const QByteArray&)> write;

    static Keychain ofDesktop();
};

/// The keychain, or the file where no keychain is running.
class KeychainRecordStore final : public RecordStore {
public:
    /// `patience` is how long one call waits for the keychain.
    explicit KeychainRecordStore(FileRecordStore file = FileRecordStore(FileRecordStore::defaultPath()),
                                 Keychain keychain = Keychain::ofDesktop(),
                                 std::chrono::milliseconds patience = std::chrono::seconds(10));

    std::optional<QByteArray> load(const StopQuery& isStopping = {}) override;
    void save(const QByteArray& bytes, const StopQuery& isStopping = {}) override;

private:
    bool isThere(const std::future<Keychain::Answer>& answer, const StopQuery& isStopping) const;

    // Exists once the keychain has refused a record, and is used from then on: the record in the keychain is
    // older, or was never read and must not be replaced.
    FileRecordStore m_file;
    Keychain m_keychain;
    std::chrono::milliseconds m_patience;
    std::future<Keychain::Answer> m_reading; // valid while the keychain has not answered
    bool m_isRefused = false;
};

}
