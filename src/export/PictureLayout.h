// Places the source picture and the overlay in the exported frames.
#pragma once

#include "export/ExportSettings.h"
#include "media/FrameConverter.h"
#include "media/MediaInfo.h"

#include <QRect>
#include <QSize>
#include <QSizeF>

namespace pointloom {

struct PictureLayout {
    QSize frameSize;                         // of the encoded frames, both sides even
    media::Orientation orientation;          // players must apply it to the encoded frames
    media::Rational sampleAspectRatio{1, 1}; // of the encoded frames
    QRect picture;                           // place of the source picture in the encoded frame
    QRectF seen = media::wholePicture;       // the part of the upright source that is there, fractions of it
    QSizeF canvas;                           // the frame as players show it: upright, square pixels
    QSizeF nativeVideoSize; // what is seen of the source, in its own upright pixels, the unit of templates
    bool keepsStoredPicture = true; // its pixels are neither turned nor scaled

    /// The encoded frame turned upright; its pixels are square only when the sample aspect ratio is 1.
    QSize uprightFrameSize() const;

    /// By a part of the source's picture.
    bool isFilled() const { return seen != media::wholePicture; }
};

/// At the original size frames keep their stored orientation and pixel shape and carry both along; any
/// other size gets the upright picture, cropped to the frame's shape or fitted with black bars. `fill` as in
/// ExportSettings.
PictureLayout planPicture(const media::VideoTrackInfo& track, ExportPreset preset,
                          std::optional<double> fill = {});

/// True when a picture of `source` size leaves bars in `target`: their aspect ratios differ by 0.02 or more.
bool leavesBars(QSizeF source, QSize target);

/// The part of a picture that fills `target` where `leavesBars`, in fractions of the picture. `position` as
/// ExportSettings::fill.
QRectF fillingPart(QSizeF source, QSize target, double position);

/// The part of `target` that a picture of `source` size is drawn into: all of it when the aspect ratios
/// differ by less than 0.02, else the largest centred part of the source's shape. Sides and corner even.
QRect fittedPicture(QSizeF source, QSize target);

}
