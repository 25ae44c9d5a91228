// Times of decoding for packets that leave an encoder in another order than their pictures went in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

namespace pointloom::media {

/// x265 hands out memory it never set as decoding times when a clip ends before its first reordered picture.
/// This counts them as x264 and x265 mean them: the times of the pictures in order, moved ahead by as many
/// pictures as may be reordered.
class DecodeTimes {
public:
    void pictureWentIn(std::int64_t timestamp) { m_timestamps.push_back(timestamp); }

    /// For the next packet; call once for each, after its picture went in.
    std::int64_t next() {
        if (m_packets == 0)
            m_lead = m_timestamps.size() > reorderDepth ? m_timestamps[reorderDepth] - m_timestamps.front()
                                                        : m_timestamps.back() - m_timestamps.front() + 1;
        if (m_packets < reorderDepth)
            return m_timestamps.at(m_packets++) - m_lead;
        const std::int64_t time = m_timestamps.front();
        m_timestamps.pop_front();
        return time;
    }

private:
    static constexpr std::size_t reorderDepth = 2; // pictures, of x265 with B-frames in a pyramid

    std::deque<std::int64_t> m_timestamps; // that no packet took yet; all while packets are below the depth
    std::size_t m_packets = 0;             // counted up to the depth
    std::int64_t m_lead = 0;               // ticks
};

}
