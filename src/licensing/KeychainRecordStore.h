// The licence in the desktop's keychain, and in a file where no keychain is running.
#pragma once

#include "licensing/FileRecordStore.h"

#include <chrono>

namespace pointloom {

class KeychainRecordStore final : public RecordStore {
public:
    /// The keychain may ask the person to unlock it; after `patience` it counts as not running.
    explicit KeychainRecordStore(FileRecordStore file = FileRecordStore(FileRecordStore::defaultPath()),
                                 std::chrono::milliseconds patience = std::chrono::seconds(10));

    std::optional<QByteArray> load() override;
    void save(const QByteArray& bytes) override;
    void remove() override;

private:
    // There only when the keychain did not take what was saved last, and then newer than what it holds.
    FileRecordStore m_file;
    std::chrono::milliseconds m_patience;
};

}
