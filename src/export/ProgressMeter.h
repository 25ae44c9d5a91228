// How far an export has come, told once for each whole per cent.
#pragma once

#include "export/ExportManager.h"

#include <algorithm>

namespace pointloom {

class ProgressMeter {
public:
    /// `report` may be empty, and must live as long as this; so must `counter`, which is set to each number
    /// of frames, when there is one.
    ProgressMeter(const ExportManager::ProgressReport& report, std::int64_t expectedFrames,
                  std::atomic<std::int64_t>* counter = nullptr)
        : m_report(report)
        , m_expectedFrames(std::max<std::int64_t>(1, expectedFrames))
        , m_counter(counter) {}

    void countFrame() {
        constexpr double mostBeforeTheEnd = 0.95; // the encoders' last frames and the index take time too
        ++m_frames;
        if (m_counter != nullptr)
            *m_counter = m_frames;
        const double fraction = static_cast<double>(m_frames) / static_cast<double>(m_expectedFrames);
        const int percent = static_cast<int>(fraction * 100);
        if (percent == m_lastPercent)
            return;
        m_lastPercent = percent;
        send(std::min(fraction, mostBeforeTheEnd));
    }

    void finish() const { send(1.0); }

    std::int64_t frames() const { return m_frames; }

private:
    void send(double fraction) const {
        if (m_report)
            m_report({fraction, m_frames, std::max(m_expectedFrames, m_frames)});
    }

    const ExportManager::ProgressReport& m_report;
    std::int64_t m_expectedFrames;
    std::atomic<std::int64_t>* m_counter;
    std::int64_t m_frames = 0;
    int m_lastPercent = -1;
};

}
