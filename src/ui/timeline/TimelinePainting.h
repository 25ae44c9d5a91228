// Paints the timeline: what is visible of a scene. Functions leave the painter as it was.
#pragma once

#include "ui/timeline/TimelineScene.h"

#include <QFont>
#include <QString>

class QPainter;

namespace pointloom {

class ThumbnailStore;
class WaveformStore;

namespace TimelinePainting {

struct Look {
    QFont font;                  // of small texts
    double devicePixelRatio = 1; // for lines on whole pixels
};

/// The text of a cut: the longer one that fits, or none.
struct CutWords {
    QString brief;
    QString full;
};

/// All rows, without the playhead and without the marker that is being dragged.
void paintRows(QPainter& painter, const TimelineScene& scene, ThumbnailStore& thumbnails,
               const WaveformStore& sound, const CutWords& words, const Look& look);

/// A flag that is being dragged, at another time than its own.
void paintMovingFlag(QPainter& painter, const TimelineScene& scene, const Flag& flag, double time,
                     const Look& look);

/// The area in which `paintPlayhead` paints, points.
QRectF playheadArea(const TimelineScene& scene);
void paintPlayhead(QPainter& painter, const TimelineScene& scene, const Look& look);

/// The playhead before a drag, quietly.
void paintOrigin(QPainter& painter, const TimelineScene& scene, double time, const Look& look);

/// The ring around the item that has the focus, visible on any other colour of the timeline.
void paintRing(QPainter& painter, const QRectF& area);

/// The time of a drag above a line through all rows, which is double on a snap target.
void paintBubble(QPainter& painter, const TimelineScene& scene, double time, bool isOnTarget,
                 const Look& look);

}

}
