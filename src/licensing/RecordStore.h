// Where the licence of this machine is kept between runs.
#pragma once

#include <functional>
#include <optional>
#include <QByteArray>

namespace pointloom {

/// Bytes that a store holds at most.
constexpr qint64 largestRecord = 256 * 1024;

class RecordStore {
public:
    using StopQuery = std::function<bool()>; // polled; true ends the wait

    virtual ~RecordStore() = default;

    /// What was saved last; empty only when nothing is there. Throws LicenceError when that is not known:
    /// `keychainLocked` while the keychain has not answered (the next call waits for the same answer),
    /// `keychainRefused`, `file`, `cancelled`.
    virtual std::optional<QByteArray> load(const StopQuery& isStopping = {}) = 0;

    /// Replaces what was loaded last. A keychain that refused to be read is left as it is. Throws
    /// LicenceError (file) that says why it failed.
    virtual void save(const QByteArray& bytes, const StopQuery& isStopping = {}) = 0;
};

}
