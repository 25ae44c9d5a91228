// A player with its view, for tests: waits for what should happen and remembers what did.
#pragma once

#include "playback/Player.h"
#include "playback/PlayerView.h"

#include <functional>
#include <QStringList>
#include <vector>

namespace pointloom::playback {

class Watched {
public:
    explicit Watched(PlayerView::Rendering rendering = PlayerView::Rendering::software,
                     QSize size = {320, 64});

    Player player{Sound::none};
    PlayerView view;

    int loads = 0;
    int ends = 0;
    QStringList failures;
    media::MediaFault lastFault = media::MediaFault::other;
    std::vector<double> times;
    std::vector<double> seeks;

    /// Lets events happen until `done`; false when that takes longer than `milliseconds`.
    static bool waitFor(const std::function<bool()>& done, int milliseconds = 20'000);

    /// Lets events happen for a while.
    static void settle(int milliseconds = 100);

    /// Loads and waits for the outcome; true when the file was loaded.
    bool load(const media::Recording& recording);

    /// Seeks and waits until nothing is under way.
    bool seek(double seconds, Player::SeekMode mode = Player::SeekMode::exact);

    /// What the view shows inside of its video rectangle, once drawing has caught up.
    QImage picture();

    /// The number of the frame that is shown.
    int frameNumber();

    /// Waits until the frame with this number is shown.
    bool showsFrame(int number);

    /// Waits until the playhead is at a time, within half a millisecond.
    bool reaches(double seconds);
};

}
