// Sends the pending crash record to the DSN its argument names, as the program's next start does, and waits
// until that is done. For scripts/crash-report-peer.sh.
#include "crash/CrashReporter.h"
#include "json/JsonDocument.h"

#include <atomic>
#include <QCoreApplication>
#include <QThread>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    pointloom::json::OrderedValue info;
    info["CFBundleShortVersionString"] = "0.1.0";
    info["CFBundleVersion"] = "1";
    info["SentryDSN"] = argv[1];
    std::atomic<int> questions = 0;
    pointloom::CrashReporter reporter;
    reporter.setConsentQuery([&] {
        ++questions;
        return true;
    });
    reporter.setup(pointloom::InfoDictionary::fromJson(pointloom::json::compact(info)));
    // Work is done in order: when consent is asked for the second time, the upload is over.
    reporter.captureError(QStringLiteral("end of the queue"), {});
    constexpr unsigned long pause = 20; // ms
    while (questions < 2)
        QThread::msleep(pause);
    return 0;
}
