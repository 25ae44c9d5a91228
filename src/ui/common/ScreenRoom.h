// Size and place of windows on the screen that they are shown on.
#pragma once

#include <algorithm>
#include <QScreen>
#include <QSize>
#include <QWidget>

namespace pointloom {

/// Points inside of a window's frame.
inline QSize screenRoom(const QWidget& window) {
    constexpr QSize frame(16, 48); // of the usual desktops, with the bar of the title
    return window.screen()->availableSize() - frame;
}

/// Moves a dialog over the middle of the window that it belongs to, within the screen. Called once its size
/// is known, before `QDialog::showEvent`, which guesses the frame and is up to 40 points off.
inline void placeOverWindow(QWidget& dialog) {
    if (!dialog.parentWidget())
        return;
    const QWidget& window = *dialog.parentWidget()->window();
    const QRect outside = window.frameGeometry();
    const QSize frame = outside.size() - window.size(); // the dialog gets the same
    QRect place({}, dialog.size() + frame);
    place.moveCenter(outside.center());
    const QRect screen = window.screen()->availableGeometry();
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    dialog.move(place.topLeft());
}

}
