// A named stretch of a video, as players list them.
#pragma once

#include <QString>

namespace pointloom::media {

struct Chapter {
    double start = 0; // seconds from the start of the file
    double end = 0;
    QString title;

    bool operator==(const Chapter&) const = default;
};

}
