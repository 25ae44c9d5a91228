// Where a session is kept between launches; the session itself does not know.
#pragma once

namespace pointloom {

class AppState;

class SessionStore {
public:
    virtual ~SessionStore() = default;

    /// Keeps the whole session. Never throws: what cannot be stored leaves the stored session as it was.
    virtual void save(const AppState& state) noexcept = 0;

    /// Forgets the stored session. Never throws.
    virtual void clear() noexcept = 0;

    /// Tries again the last of the above if it failed. Never throws.
    virtual void retry() noexcept = 0;
};

}
