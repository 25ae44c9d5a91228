#include "playback/SeekQueue.h"

#include <algorithm>
#include <utility>

namespace pointloom::playback {

std::optional<Seek> SeekQueue::request(Seek seek) {
    m_waiting = seek;
    m_waitingSteps = 0;
    return takeWaiting();
}

int SeekQueue::requestSteps(int frames) {
    m_waitingSteps = std::clamp(m_waitingSteps + frames, -maximumWaitingSteps, maximumWaitingSteps);
    return takeSteps();
}

std::optional<Seek> SeekQueue::takeWaiting() {
    if (m_current || !m_waiting)
        return std::nullopt;
    m_current = std::exchange(m_waiting, std::nullopt);
    return m_current;
}

int SeekQueue::takeSteps() {
    if (m_current || m_waiting)
        return 0;
    if (m_waitingSteps >= 0)
        return std::exchange(m_waitingSteps, 0);
    ++m_waitingSteps;
    m_current = Seek{Seek::Kind::stepBack, 0};
    return -1;
}

void SeekQueue::clear() {
    *this = {};
}

}
