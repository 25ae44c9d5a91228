// Paints the rows of a timeline. Each function paints what is visible of one row and leaves the painter as it
// was.
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
    double devicePixelRatio = 1; // for lines that lie on whole pixels
};

/// A word that stands in a cut zone when there is room.
struct CutWords {
    QString brief;
    QString full;
};

void paintRuler(QPainter& painter, const TimelineScene& scene, const Look& look);
void paintFlags(QPainter& painter, const TimelineScene& scene, const Look& look);
void paintThumbnails(QPainter& painter, const TimelineScene& scene, ThumbnailStore& store,
                     double aspectRatio);

/// The width that pictures of `aspectRatio` take in their row, points.
double thumbnailWidth(const TimelineScene& scene, double aspectRatio);
void paintWaveform(QPainter& painter, const TimelineScene& scene, const WaveformStore& store,
                   const Look& look);
void paintTrim(QPainter& painter, const TimelineScene& scene, const Look& look);
void paintCuts(QPainter& painter, const TimelineScene& scene, const CutWords& words, const Look& look);
void paintTrimHandles(QPainter& painter, const TimelineScene& scene, const Look& look);
void paintPlayhead(QPainter& painter, const TimelineScene& scene, const Look& look);

/// A flag that is being dragged, at another time than its own.
void paintMovingFlag(QPainter& painter, const TimelineScene& scene, const Flag& flag, double time,
                     const Look& look);

/// The time of what is being dragged; with a line through all rows when it holds on to something.
void paintBubble(QPainter& painter, const TimelineScene& scene, double time, bool isOnTarget,
                 const Look& look);

/// What the playhead's painting covers, points.
QRectF playheadArea(const TimelineScene& scene);

}

}
