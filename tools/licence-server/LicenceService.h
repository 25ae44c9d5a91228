// What the service decides, apart from how requests come in.
#pragma once

#include "licence-server/LicenceDatabase.h"
#include "licensing/LicenceClient.h"
#include "licensing/LicenceRecord.h"

#include <functional>
#include <QByteArray>
#include <QDateTime>

namespace pointloom::licenceserver {

struct Answer {
    int status = 200;
    QByteArray body; // JSON
};

class LicenceService {
public:
    using Clock = std::function<QDateTime()>;

    LicenceService(
        LicenceDatabase& database, const Ed25519::SecretKey& secretKey,
        Clock now = [] { return QDateTime::currentDateTimeUtc(); });

    /// `path` is the request's target, `body` what was posted. Never throws.
    Answer answer(const QByteArray& path, const QByteArray& body) noexcept;

private:
    Answer activate(const SoldKey& key, const LicenceRequest& request);
    Answer renew(const SoldKey& key, const LicenceRequest& request);
    Answer deactivate(const SoldKey& key, const LicenceRequest& request);
    Answer licenceFor(const SoldKey& key, const LicenceRequest& request) const;
    bool hasEnded(const SoldKey& key) const;

    LicenceDatabase& m_database;
    Ed25519::SecretKey m_secretKey;
    Clock m_now;
};

}
