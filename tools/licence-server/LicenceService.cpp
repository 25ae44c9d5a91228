#include "licence-server/LicenceService.h"

#include "licensing/LicenceKey.h"
#include "licensing/LicenceRecord.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <cstdio>
#include <QRegularExpression>
#include <QUuid>

namespace pointloom::licenceserver {

namespace {

Answer refusal(int status, const char* code) {
    json::OrderedValue body;
    body["error"] = code;
    return {status, json::compact(body) + '\n'};
}

Answer limitReached(int machines) {
    json::OrderedValue body;
    body["error"] = "limit_reached";
    body["machines"] = machines;
    return {409, json::compact(body) + '\n'};
}

QDateTime timeFrom(const QString& text) {
    return QDateTime::fromString(text, Qt::ISODate);
}

// Throws json::DecodingError or LicenceError for anything that is not a request.
LicenceRequest requestFrom(const QByteArray& body) {
    auto request = json::decode<LicenceRequest>(json::parse(body, {.bytes = 16 * 1024, .depth = 4}));
    static const QRegularExpression fingerprint(QStringLiteral("\\A[0-9a-f]{64}\\z"));
    static const QRegularExpression nonce(QStringLiteral("\\A[0-9a-f]{32}\\z"));
    constexpr qsizetype longestVersion = 64;
    if (request.format != LicenceRequest::currentFormat() ||
        !fingerprint.match(request.fingerprint).hasMatch() || !nonce.match(request.nonce).hasMatch() ||
        request.version.size() > longestVersion)
        throw json::DecodingError("not a request of this format");
    return request;
}

}

LicenceService::LicenceService(LicenceDatabase& database, const Ed25519::SecretKey& secretKey, Clock now)
    : m_database(database)
    , m_secretKey(secretKey)
    , m_now(std::move(now)) {}

Answer LicenceService::answer(const QByteArray& path, const QByteArray& body) noexcept {
    try {
        const QByteArray operation = path.mid(path.lastIndexOf('/') + 1);
        if (operation != "activate" && operation != "renew" && operation != "deactivate")
            return refusal(404, "no_such_operation");
        const LicenceRequest request = requestFrom(body);
        const auto key = m_database.find(LicenceKey::parse(request.key).text());
        if (!key)
            return refusal(404, "unknown_key");
        if (operation == "deactivate")
            return deactivate(*key, request);
        if (key->isRevoked)
            return refusal(403, "revoked");
        if (hasEnded(*key))
            return refusal(403, "expired");
        return operation == "activate" ? activate(*key, request) : renew(*key, request);
    } catch (const json::DecodingError&) {
        return refusal(400, "bad_request");
    } catch (const LicenceError&) {
        return refusal(404, "unknown_key"); // no key at all is no key of ours
    } catch (const std::exception& error) {
        std::fprintf(stderr, "[LicenceServer] %s\n", error.what());
        return {500, "{\"error\":\"internal\"}\n"};
    }
}

Answer LicenceService::activate(const SoldKey& key, const LicenceRequest& request) {
    if (!m_database.activate(key, request.fingerprint, request.version))
        return limitReached(m_database.machineCount(key.key));
    return licenceFor(key, request);
}

Answer LicenceService::renew(const SoldKey& key, const LicenceRequest& request) {
    if (!m_database.isActivated(key.key, request.fingerprint))
        return refusal(404, "not_activated");
    return licenceFor(key, request);
}

Answer LicenceService::deactivate(const SoldKey& key, const LicenceRequest& request) {
    // A recorded request must not free the machine again after it was activated anew.
    if (!m_database.isFirstUse(request.nonce))
        return refusal(409, "replayed");
    if (!m_database.deactivate(key.key, request.fingerprint))
        return refusal(404, "not_activated");
    return {200, "{}\n"};
}

Answer LicenceService::licenceFor(const SoldKey& key, const LicenceRequest& request) const {
    const QDateTime now = m_now();
    LicenceRecord record{.format = LicenceRecord::currentFormat(),
                         .id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                         .key = key.key,
                         .fingerprint = request.fingerprint,
                         .holder = key.holder,
                         .issued = now,
                         .expires = {},
                         .nonce = request.nonce};
    if (key.ends)
        record.expires = timeFrom(*key.ends);
    if (key.leaseDays)
        record.expires =
            std::min(now.addDays(*key.leaseDays), record.expires.value_or(now.addDays(*key.leaseDays)));
    return {200, SignedLicence::sign(record, m_secretKey).toJson()};
}

bool LicenceService::hasEnded(const SoldKey& key) const {
    return key.ends && m_now() >= timeFrom(*key.ends);
}

}
