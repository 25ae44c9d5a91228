// Events and envelopes as a Sentry-protocol collector takes them.
#pragma once

#include "crash/PendingCrashReport.h"
#include "crash/SentryDSN.h"
#include "info/InfoDictionary.h"

#include <map>
#include <QByteArray>
#include <QString>
#include <vector>

namespace pointloom::CrashEvent {

/// Stack lines as a crash record lists them, innermost first; the event lists the `mostFrames` innermost,
/// outermost first.
json::OrderedValue buildEvent(const QString& level, const QString& type, const QString& value,
                              const std::vector<QString>& frames, const std::map<QString, QString>& tags,
                              const InfoDictionary& info);

/// The event of a crash record, level "fatal".
json::OrderedValue eventOf(const PendingCrashReport& report, const InfoDictionary& info);

/// The body of the request: three lines, each closed by a line feed.
QByteArray envelope(const json::OrderedValue& event, const SentryDSN& dsn);

}
