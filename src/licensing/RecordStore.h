// Where the licence of this machine is kept between runs.
#pragma once

#include <optional>
#include <QByteArray>

namespace pointloom {

class RecordStore {
public:
    virtual ~RecordStore() = default;

    /// What was saved last; empty when nothing is there or it cannot be reached.
    virtual std::optional<QByteArray> load() = 0;

    /// Throws LicenceError (file) that says why it failed.
    virtual void save(const QByteArray& bytes) = 0;

    /// Forgets; throws as `save` does.
    virtual void remove() = 0;
};

}
