#include "crash/EnvelopeUpload.h"

#include <cstdio>
#include <memory>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace pointloom {

namespace {

constexpr int timeoutMilliseconds = 30'000;
constexpr int pollMilliseconds = 100;
constexpr qint64 largestReply = 64 * 1024;

void print(const QString& line) {
    std::fprintf(stderr, "[CrashReporter] %s\n", qUtf8Printable(line));
}

QNetworkRequest requestTo(const SentryDSN& dsn) {
    QNetworkRequest request(dsn.envelopeURL);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/x-sentry-envelope"));
    request.setRawHeader("X-Sentry-Auth", "Sentry sentry_version=7, sentry_key=" + dsn.publicKey.toUtf8()
                                              + ", sentry_client=pointloom/1.0");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(timeoutMilliseconds);
    return request;
}

}

void uploadEnvelope(const QByteArray& envelope, const SentryDSN& dsn, const std::function<bool()>& isStopping) {
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.post(requestTo(dsn), envelope));
    reply->setReadBufferSize(largestReply);

    QEventLoop loop;
    QTimer deadline; // the transfer timeout starts anew with every byte; this one does not
    deadline.setSingleShot(true);
    QTimer poll;
    qint64 received = 0;
    bool gaveUp = false;
    const auto giveUp = [&] {
        gaveUp = true;
        reply->abort();
        loop.quit();
    };
    QObject::connect(&deadline, &QTimer::timeout, &loop, giveUp);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (isStopping())
            giveUp();
    });
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, [&] {
        received += reply->readAll().size();
        if (received > largestReply)
            giveUp();
    });
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    deadline.start(timeoutMilliseconds);
    poll.start(pollMilliseconds);
    if (!reply->isFinished())
        loop.exec();

    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 200)
        return;
    if (status != 0)
        print(QStringLiteral("Sentry returned HTTP %1").arg(status));
    else
        print(QStringLiteral("send failed: %1").arg(gaveUp ? QStringLiteral("no answer in time") : reply->errorString()));
}

}
