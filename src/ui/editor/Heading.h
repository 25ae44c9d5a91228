// The small heading over each part of the sidebar.
#pragma once

#include "ui/style/Controls.h"

namespace pointloom {

inline void styleAsHeading(QLabel* label) {
    label->setStyleSheet(QStringLiteral("font-weight: 600;"));
}

inline QLabel* makeHeading(QWidget* parent) {
    QLabel* heading = Controls::label(Controls::TextRole::body, parent);
    styleAsHeading(heading);
    return heading;
}

}
