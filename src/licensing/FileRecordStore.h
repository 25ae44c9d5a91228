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

    std::optional<QByteArray> load() override;
    void save(const QByteArray& bytes) override; // mode 0600, whole or not at all
    void remove() override;

private:
    QString m_path;
};

}
