#include "licensing/LicenceClient.h"

#include "http/HttpPost.h"
#include "licensing/LicenceKey.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <array>
#include <optional>
#include <QRandomGenerator>

namespace pointloom {

namespace {

struct Refusal {
    const char* code;
    LicenceFault fault;
    const char16_t* words;
};

constexpr std::array refusals{
    Refusal{"unknown_key", LicenceFault::unknownKey,
            u"The licence service does not know this key. Compare it with your receipt."},
    Refusal{
        "limit_reached", LicenceFault::limitReached,
        u"This key is already used on as many machines as it was bought for. Deactivate one of them first."},
    Refusal{"revoked", LicenceFault::revoked, u"This key was withdrawn by the seller."},
    Refusal{"expired", LicenceFault::ended, u"The licence of this key has run out."},
    Refusal{"not_activated", LicenceFault::notActivated,
            u"The licence service does not count this machine among those that use this key."},
};

// The error the service names; empty when its answer names none.
std::optional<LicenceError> namedRefusal(const QByteArray& body) {
    try {
        const json::Value answer = json::parse(body, {.bytes = 64 * 1024, .depth = 4});
        const auto code = json::decode<QString>(json::requiredMember(answer, "error", {})).toStdString();
        const auto refusal =
            std::find_if(refusals.begin(), refusals.end(), [&](const Refusal& r) { return r.code == code; });
        if (refusal == refusals.end())
            return std::nullopt;
        if (refusal->fault == LicenceFault::limitReached && answer.contains("machines")) {
            const auto machines = json::decode<std::int32_t>(answer["machines"]);
            if (machines == 1)
                return LicenceError(
                    refusal->fault,
                    QStringLiteral(
                        "This key is already used on another machine. Deactivate it there first."));
            if (machines > 1)
                return LicenceError(
                    refusal->fault,
                    QStringLiteral("This key is already used on %1 machines. Deactivate one of them first.")
                        .arg(machines));
        }
        return LicenceError(refusal->fault, QString::fromUtf16(refusal->words));
    } catch (const json::DecodingError&) {
        return std::nullopt;
    }
}

}

LicenceRequest LicenceRequest::make(const LicenceKey& key, const QString& fingerprint,
                                    const QString& version) {
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), static_cast<qsizetype>(random.size()));
    const QByteArray bytes(reinterpret_cast<const char*>(random.data()), sizeof random);
    return {currentFormat(), key.text(), fingerprint, version, QString::fromLatin1(bytes.toHex())};
}

QByteArray LicenceRequest::toJson() const {
    return json::compact(json::encode(*this)) + '\n';
}

LicenceClient::LicenceClient(const QString& serviceURL, std::chrono::milliseconds timeout)
    : m_base(serviceURL, QUrl::StrictMode)
    , m_timeout(timeout) {
    if (serviceURL.isEmpty())
        throw LicenceError(LicenceFault::notConfigured,
                           QStringLiteral("This copy of Pointloom names no licence service."));
    if (!isSecureOrLoopback(m_base))
        throw LicenceError(
            LicenceFault::notConfigured,
            QStringLiteral("This copy of Pointloom names a licence service that cannot be used: its "
                           "address is not a secure one."));
}

QByteArray LicenceClient::post(const QString& operation, const LicenceRequest& request,
                               const std::function<bool()>& isStopping) const {
    QUrl url = m_base;
    const QString folder = url.path();
    url.setPath(folder + (folder.endsWith(u'/') ? QString() : QStringLiteral("/")) + operation);
    const HttpReply reply = send({
        .url = url,
        .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
        .body = request.toJson(),
        .timeout = m_timeout,
        .isStopping = isStopping,
    });
    if (isStopping && isStopping() && !reply.isComplete)
        throw LicenceError(LicenceFault::cancelled, QStringLiteral("Cancelled."));
    return decode(reply);
}

QByteArray LicenceClient::decode(const HttpReply& reply) {
    if (reply.status == 0)
        throw LicenceError(LicenceFault::noConnection,
                           QStringLiteral("The licence service could not be reached: %1").arg(reply.failure));
    if (const auto refusal = namedRefusal(reply.body))
        throw *refusal;
    if (!reply.isComplete)
        throw LicenceError(
            LicenceFault::serviceTrouble,
            QStringLiteral("The answer of the licence service could not be read: %1").arg(reply.failure));
    constexpr int success = 200;
    if (reply.status != success)
        throw LicenceError(LicenceFault::serviceTrouble,
                           QStringLiteral("The licence service is in trouble (HTTP %1). Try again later.")
                               .arg(reply.status));
    return reply.body;
}

}
