// Client of the licence service: one bounded POST for each operation.
#pragma once

#include "licensing/LicenceKey.h"
#include "json/JsonFields.h"

#include <chrono>
#include <functional>
#include <QByteArray>
#include <QString>
#include <QUrl>

namespace pointloom {

struct HttpReply;

/// The request that is sent, or written to a file on a machine without a network.
struct LicenceRequest {
    QString format; // currentFormat
    QString key;
    QString fingerprint;
    QString version; // of the application
    QString nonce;   // 32 hexadecimal digits, fresh for each request; the answer repeats them

    bool operator==(const LicenceRequest&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            json::field("format", &LicenceRequest::format), json::field("key", &LicenceRequest::key),
            json::field("fingerprint", &LicenceRequest::fingerprint),
            json::field("version", &LicenceRequest::version), json::field("nonce", &LicenceRequest::nonce)};
    }

    static QString currentFormat() { return QStringLiteral("pointloom-licence-request-1"); }

    static LicenceRequest make(const LicenceKey& key, const QString& fingerprint, const QString& version);
    QByteArray toJson() const;
};

class LicenceClient {
public:
    /// `serviceURL` as the information dictionary names it. Throws LicenceError (notConfigured) unless it is
    /// HTTPS, or HTTP on this very machine.
    explicit LicenceClient(const QString& serviceURL,
                           std::chrono::milliseconds timeout = std::chrono::seconds(30));

    /// Posts to `operation` ("activate", "renew", "deactivate") under the service's address and returns the
    /// body of an answer with status 200 that names no error. Throws LicenceError for every other answer.
    /// `isStopping` cancels.
    QByteArray post(const QString& operation, const LicenceRequest& request,
                    const std::function<bool()>& isStopping = {}) const;

    /// The body of an answer to success. Throws LicenceError for every other answer, and for none.
    static QByteArray decode(const HttpReply& reply);

private:
    QUrl m_base;
    std::chrono::milliseconds m_timeout;
};

}
