// How large a window of its own may be on the screen that it is shown on.
#pragma once

#include <QScreen>
#include <QSize>
#include <QWidget>

namespace pointloom {

/// Points inside of a window's frame.
inline QSize screenRoom(const QWidget& window) {
    constexpr QSize frame(16, 48); // of the usual desktops, with the bar of the title
    return window.screen()->availableSize() - frame;
}

}
