// Hands values from one thread to another, never more than a few at a time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

namespace pointloom {

/// Either side can close the queue: the sender when nothing more will come, the receiver when it wants
/// nothing more.
template <class Value>
class BoundedQueue {
public:
    explicit BoundedQueue(std::size_t capacity)
        : m_capacity(capacity) {}

    /// Waits for room. False when the queue was closed and the value is not wanted.
    [[nodiscard]] bool push(Value value) {
        std::unique_lock lock(m_mutex);
        m_hasRoom.wait(lock, [&] { return m_closed || m_values.size() < m_capacity; });
        if (m_closed)
            return false;
        m_values.push_back(std::move(value));
        m_hasValue.notify_one();
        return true;
    }

    /// Waits for a value, for so long at most. False when none came in that time and one may still come.
    bool waitForValue(std::chrono::milliseconds patience) {
        std::unique_lock lock(m_mutex);
        return m_hasValue.wait_for(lock, patience, [&] { return m_closed || !m_values.empty(); });
    }

    /// Waits for a value. Empty when the queue is closed and drained.
    std::optional<Value> pop() {
        std::unique_lock lock(m_mutex);
        m_hasValue.wait(lock, [&] { return m_closed || !m_values.empty(); });
        if (m_values.empty())
            return std::nullopt;
        std::optional<Value> value(std::move(m_values.front()));
        m_values.pop_front();
        m_hasRoom.notify_one();
        return value;
    }

    void close() {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        m_hasRoom.notify_all();
        m_hasValue.notify_all();
    }

private:
    const std::size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable m_hasRoom;
    std::condition_variable m_hasValue;
    std::deque<Value> m_values;
    bool m_closed = false;
};

}
