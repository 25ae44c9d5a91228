// Any bytes as a licence file, as the record that a seller signed, and as a key typed in.
#include "FuzzTarget.h"
#include "licensing/LicenceKey.h"
#include "licensing/LicenceStatus.h"
#include "json/JsonDocument.h"

namespace pointloom::fuzz {

namespace {

const Ed25519::SecretKey& seller() {
    static const Ed25519::SecretKey key = Ed25519::generateSecretKey();
    return key;
}

template <class Reading>
void tryReading(const Reading& reading) {
    try {
        reading();
    } catch (const LicenceError& error) {
        requireReadable(error.what());
    }
}

void tryKey(const QByteArray& text) {
    const LicenceKey key = LicenceKey::parse(QString::fromUtf8(text));
    require(LicenceKey::parse(key.text()) == key, "a key reads as it is written");
}

void tryFile(const QByteArray& bytes) {
    const auto licence = SignedLicence::fromJson(bytes);
    require(SignedLicence::fromJson(licence.toJson()) == licence, "a licence reads as it was written");
    (void)licence.verified(Ed25519::publicKeyOf(seller()));
    require(false, "no signature of this key holds that was not made with it");
}

void tryRecord(const QByteArray& payload) {
    const SignedLicence licence{payload.toBase64(), Ed25519::sign(payload, seller()).toBase64()};
    const LicenceRecord record = licence.verified(Ed25519::publicKeyOf(seller()));
    require(SignedLicence::sign(record, seller()).verified(Ed25519::publicKeyOf(seller())) == record,
            "a record reads as it was signed");
    const LicenceStatus status =
        statusOf(record, record.fingerprint, record.issued.addDays(1), record.issued);
    requireReadable(status.inWords().toStdString());
}

bool isJson(const QByteArray& bytes) {
    return json::Value::accept(bytes.begin(), bytes.end());
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pointloom::fuzz;
    const QByteArray bytes = bytesOf(data, size);
    tryReading([&] { tryKey(bytes); });
    tryReading([&] { tryFile(bytes); });
    if (isJson(bytes)) // a signature takes longer than all else
        tryReading([&] { tryRecord(bytes); });
    return 0;
}
