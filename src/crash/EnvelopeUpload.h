// One upload of an envelope, bounded in time and in what it reads back.
#pragma once

#include "crash/SentryDSN.h"

#include <chrono>
#include <functional>
#include <QByteArray>

namespace pointloom {

/// Posts `envelope` and waits for the answer, on a thread that may wait: at most `timeout`, at most 64 KiB
/// of the reply, no redirect to plain HTTP. `isStopping` is polled ten times a second and ends the upload.
/// Prints one line when it fails; only status 200 is success.
void uploadEnvelope(const QByteArray& envelope, const SentryDSN& dsn, const std::function<bool()>& isStopping,
                    std::chrono::milliseconds timeout = std::chrono::seconds(30));

}
