// Sentences that a screen reader says at once, wherever the focus is.
#pragma once

#include <QString>

class QWidget;

namespace pointloom {

/// Says `words` on behalf of a widget of the window; nothing happens while no screen reader listens.
void announce(QWidget& widget, const QString& words);

}
