// The licence in a file that only its owner may read.
#pragma once

#include "licensing/RecordStore.h"

#include <QString>

namespace pointloom {

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

}
