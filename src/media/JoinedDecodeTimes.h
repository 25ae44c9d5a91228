// Times of decoding across the seams of segments that were encoded on their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <queue>
#include <vector>

namespace pointloom::media {

/// Each segment's encoder began to count anew, ahead of its own first picture: at a seam that would run into
/// the segment before. One encoder for all gives each packet, in the order of decoding, the time of the
/// picture that many places earlier in the order of showing as pictures may be reordered; so does this.
class JoinedDecodeTimes {
public:
    /// For the next packet, in ticks of the joined file; its encoder called it `decoding`.
    std::int64_t next(std::int64_t showing, std::int64_t decoding) {
        m_waiting.push(showing);
        if (m_isFirst)
            m_begin = showing;
        m_isFirst = false;
        const bool isLead = m_popped == 0 && decoding < m_begin; // of the first segment
        if (isLead)
            return decoding;
        ++m_popped;
        const std::int64_t time = m_waiting.top();
        m_waiting.pop();
        return time;
    }

private:
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> m_waiting;
    std::size_t m_popped = 0;
    std::int64_t m_begin = 0;
    bool m_isFirst = true;
};

}
