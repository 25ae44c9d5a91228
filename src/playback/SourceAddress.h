// Under which address libmpv plays a recording: the path of its only file, or a list of several files with
// their places. And how long it is, where libmpv may not know.
#pragma once

#include "playback/SourceFile.h"

namespace pointloom::playback {

/// With absolute paths, so that no name can be taken for an option, an address or one of libmpv's own
/// protocols.
media::Recording absolute(const media::Recording& recording);

/// The first fault of a file (`faultOfFile`); one that is not the first file is named.
std::optional<PlaybackFault> faultOfFiles(const media::Recording& recording);

/// Measures the files of a split recording on another thread, unless they were measured before. Calls `found`
/// from the event loop, unless `receiver` is gone: with the address, or an empty one and the fault.
void findAddress(const media::Recording& recording, QObject* receiver,
                 std::function<void(const QByteArray& address, const PlaybackFault& fault)> found);

/// Measures a recording in the same way. Calls `found` with its end in seconds from zero of its timeline, 0
/// when it cannot be read.
void findDuration(const media::Recording& recording, QObject* receiver,
                  std::function<void(double duration)> found);

}
