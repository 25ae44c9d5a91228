#include "playback/Watched.h"

#include "playback/NumberedClip.h"

#include <cmath>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace pointloom::playback {

Watched::Watched(PlayerView::Rendering rendering, QSize size)
    : view(player, rendering) {
    QObject::connect(&player, &Player::fileLoaded, &view, [this] { ++loads; });
    QObject::connect(&player, &Player::endReached, &view, [this] { ++ends; });
    QObject::connect(&player, &Player::failed, &view,
                     [this](const QString& message, media::MediaFault fault) {
                         failures << message;
                         lastFault = fault;
                     });
    QObject::connect(&player, &Player::timeChanged, &view,
                     [this](double seconds) { times.push_back(seconds); });
    QObject::connect(&player, &Player::seeked, &view, [this](double seconds) { seeks.push_back(seconds); });
    view.resize(size);
    view.show();
}

bool Watched::waitFor(const std::function<bool()>& done, int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

void Watched::settle(int milliseconds) {
    waitFor([] { return false; }, milliseconds);
}

bool Watched::load(const media::Recording& recording) {
    const int loadsBefore = loads;
    const qsizetype failuresBefore = failures.size();
    player.load(recording);
    waitFor([&] { return loads > loadsBefore || failures.size() > failuresBefore; });
    return loads > loadsBefore;
}

bool Watched::seek(double seconds, Player::SeekMode mode) {
    player.seek(seconds, mode);
    return waitFor([this] { return !player.isSeeking(); });
}

QImage Watched::picture() {
    settle(30);
    const QImage whole = view.grab().toImage();
    const double scale = whole.devicePixelRatio();
    const QRectF place = view.videoRect();
    return whole.copy(QRectF(place.topLeft() * scale, place.size() * scale).toRect());
}

int Watched::frameNumber() {
    return frameNumberIn(picture());
}

bool Watched::showsFrame(int number) {
    return waitFor([&] { return frameNumber() == number; });
}

bool Watched::reaches(double seconds) {
    constexpr double tolerance = 0.0005;
    return waitFor([&] { return std::abs(player.time() - seconds) < tolerance; });
}

}
