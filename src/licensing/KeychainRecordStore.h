// The licence in the desktop's keychain, and in a file where no keychain is running.
#pragma once

#include "licensing/FileRecordStore.h"

#include <chrono>
#include <future>

namespace pointloom {

/// Asked without waiting: the answer comes once the user has unlocked the keychain, or never.
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

    // There once the keychain did not take what was saved. It stays the place from then on: what the keychain
    // still holds is older, or was never read and must not be replaced.
    FileRecordStore m_file;
    Keychain m_keychain;
    std::chrono::milliseconds m_patience;
    std::future<Keychain::Answer> m_reading; // valid while the keychain has not answered
    bool m_isRefused = false;
};

}
