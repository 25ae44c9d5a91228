// The small heading over each part of the sidebar.
#pragma once

#include "ui/style/Controls.h"

namespace pointloom {

inline QLabel* makeHeading(QWidget* parent) {
    QLabel* heading = Controls::label(Controls::TextRole::body, parent);
    heading->setStyleSheet(QStringLiteral("font-weight: 600;"));
    return heading;
}

}
