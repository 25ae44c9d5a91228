// An hour of a user's seeking in the editor's player: exact seeks to random times, one after the other, with
// the memory of the process as it goes.
//
//     seek-endurance CLIP [SEEKS [COPY]]
//
// With COPY, the name of a small copy of the clip, its pictures are shown as in the editor; where there is no
// such file the copy is made first. At the end the playhead is dragged through the clip for some seconds, and
// the pictures that are shown meanwhile are counted.
#include "export/preview/QuickCopy.h"
#include "playback/PlayerView.h"
#include "ProcessMemory.h"

#include <algorithm>
#include <cstdio>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <random>
#include <vector>

namespace pointloom::playback {
namespace {

constexpr int usualSeeks = 3600; // one a second for an hour
constexpr int seeksInARow = 300; // of the table

double share(std::vector<double> sorted, double part) {
    std::ranges::sort(sorted);
    return sorted.at(static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1)));
}

class Endurance {
public:
    Endurance()
        : m_view(m_player, PlayerView::Rendering::software) {
        QObject::connect(&m_player, &Player::fileLoaded, &m_loop, [this] { m_loop.exit(); });
        QObject::connect(&m_player, &Player::seeked, &m_loop, [this] { m_loop.exit(); });
        QObject::connect(&m_player, &Player::failed, &m_loop, [this](const QString& message) {
            std::fprintf(stderr, "%s\n", qPrintable(message));
            m_loop.exit(EXIT_FAILURE);
        });
        m_view.resize(1280, 720);
        m_view.show();
    }

    int run(const QString& clip, int seeks, const QString& copy) {
        if (!copy.isEmpty() && !QFile::exists(copy))
            QuickCopy::make(clip, copy, {});
        m_player.load(clip);
        if (m_loop.exec() != 0)
            return EXIT_FAILURE;
        m_player.showCopy(copy);
        while (!copy.isEmpty() && (!m_player.showsCopy() || m_player.isSeeking()))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        std::printf("| seeks | median, ms | 90 of 100 below, ms | 95 of 100 below, ms | memory, MB |\n"
                    "|---|---|---|---|---|\n");
        std::printf("| 0 | | | | %.1f |\n", residentMegabytes());
        std::vector<double> times;
        for (int seek = 1; seek <= seeks; ++seek) {
            times.push_back(timeOneSeek());
            if (seek % seeksInARow != 0 && seek != seeks)
                continue;
            std::printf("| %d | %.0f | %.0f | %.0f | %.1f |\n", seek, share(times, 0.5), share(times, 0.9),
                        share(times, 0.95), residentMegabytes());
            std::fflush(stdout);
            times.clear();
        }
        std::printf("Dragging: %.1f pictures a second\n", picturesWhileDragging());
        return EXIT_SUCCESS;
    }

private:
    // As the timeline does it: a time at each move of the hand, through the whole clip in ten seconds.
    double picturesWhileDragging() {
        constexpr int dragging = 10'000; // milliseconds
        constexpr int move = 16;
        int pictures = 0;
        const auto counted = QObject::connect(&m_player, &Player::seeked, &m_view, [&] {
            m_view.repaint();
            ++pictures;
        });
        QElapsedTimer timer;
        timer.start();
        QTimer hand;
        hand.callOnTimeout(&m_view, [&] {
            const double part = static_cast<double>(timer.elapsed()) / dragging;
            m_player.seek(part * m_player.duration(), Player::SeekMode::keyframe);
            if (part >= 1)
                m_loop.exit();
        });
        hand.start(move);
        while (timer.elapsed() < dragging)
            m_loop.exec();
        QObject::disconnect(counted);
        return pictures * 1000.0 / static_cast<double>(timer.elapsed());
    }

    double timeOneSeek() {
        std::uniform_real_distribution<double> anywhere(0, m_player.duration());
        QElapsedTimer timer;
        timer.start();
        m_player.seek(anywhere(m_random));
        while (m_player.isSeeking())
            m_loop.exec();
        m_view.repaint();
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }

    Player m_player{Sound::none};
    PlayerView m_view;
    QEventLoop m_loop;
    std::mt19937 m_random{1}; // the same times in each run
};

}
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: seek-endurance CLIP [SEEKS [COPY]]\n");
        return EXIT_FAILURE;
    }
    const int seeks = arguments.value(2).toInt();
    return pointloom::playback::Endurance().run(
        arguments[1], seeks > 0 ? seeks : pointloom::playback::usualSeeks, arguments.value(3));
}
