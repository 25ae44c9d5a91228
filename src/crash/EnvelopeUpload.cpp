#include "crash/EnvelopeUpload.h"

#include "crash/CrashConsole.h"
#include "http/HttpPost.h"

namespace pointloom {

void uploadEnvelope(const QByteArray& envelope, const SentryDSN& dsn, const std::function<bool()>& isStopping,
                    std::chrono::milliseconds timeout) {
    const QByteArray authentication =
        "Sentry sentry_version=7, sentry_key=" + dsn.publicKey.toUtf8() + ", sentry_client=pointloom/1.0";
    const HttpReply reply = send({
        .url = dsn.envelopeURL,
        .headers = {{"Content-Type", "application/x-sentry-envelope"}, {"X-Sentry-Auth", authentication}},
        .body = envelope,
        .redirects = HttpRedirects::toHttpsOnly,
        .timeout = timeout,
        .isStopping = isStopping,
    });
    constexpr int success = 200;
    if (reply.status == success)
        return;
    if (reply.status != 0)
        printCrashReporterLine(QStringLiteral("Sentry returned HTTP %1").arg(reply.status));
    else
        printCrashReporterLine(QStringLiteral("send failed: ") + reply.failure);
}

}
