// Whether two files show the same frames, as far as their indexes and first frames tell.
#pragma once

#include <QString>

namespace pointloom::media {

/// True when `copy` can stand in for `original`: as many frames, each at the same time, a picture of the same
/// shape, orientation and colours, and fewer pixels. Nothing but the first frames is decoded. False also when
/// one of the files cannot be read, or has no index.
bool isSmallCopy(const QString& copy, const QString& original);

}
