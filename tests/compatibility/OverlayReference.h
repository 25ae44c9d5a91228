// The overlay drawn into a bitmap of the shown picture, to compare exported frames with.
#pragma once

#include "compatibility/Pattern.h"
#include "compatibility/Source.h"
#include "export/ExportManager.h"

#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <vector>

namespace pointloom::test {

class OverlayReference {
public:
    /// An export without loss, with a small scoreboard in the middle and a mark of four colours in a corner,
    /// into `folder`.
    static ExportJob job(const ClipFolder& folder, const QString& video, ExportFormat format);

    /// Sizes are those of the shown pictures.
    OverlayReference(const ExportJob& job, QSizeF source, QSizeF exported);

    /// Whether anything is drawn near a point (fractions).
    bool covers(QPointF point) const;

    struct Spot {
        QPointF point; // fractions
        Rgb color;     // signal of a frame with the given tags
    };

    /// Points amid areas of one opaque colour; only greys where other tags would change colours.
    std::vector<Spot> flatSpots(const SourceColor& tags) const;

private:
    bool isFlatAround(QPoint pixel, int reach) const;

    QImage m_picture;
};

}
