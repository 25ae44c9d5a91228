#include "licensing/LicenceRecord.h"

#include "licensing/LicenceKey.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <sodium.h>
#include <stdexcept>

namespace pointloom {

namespace Ed25519 {

namespace {

static_assert(publicKeySize == crypto_sign_PUBLICKEYBYTES && secretKeySize == crypto_sign_SECRETKEYBYTES &&
              signatureSize == crypto_sign_BYTES);

void startLibrary() {
    static const bool isReady = sodium_init() >= 0;
    if (!isReady)
        throw std::runtime_error("the cryptography library cannot start");
}

const unsigned char* bytesOf(const QByteArray& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

template <std::size_t size>
std::optional<std::array<unsigned char, size>> fromBase64(const QByteArray& text) {
    const auto decoded =
        QByteArray::fromBase64Encoding(text.trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() != static_cast<qsizetype>(size))
        return std::nullopt;
    std::array<unsigned char, size> key{};
    std::copy_n(bytesOf(decoded.decoded), size, key.begin());
    return key;
}

}

std::optional<PublicKey> publicKeyFromBase64(const QByteArray& text) {
    return fromBase64<publicKeySize>(text);
}

std::optional<SecretKey> secretKeyFromBase64(const QByteArray& text) {
    return fromBase64<secretKeySize>(text);
}

bool verify(const QByteArray& message, const QByteArray& signature, const PublicKey& key) {
    startLibrary();
    return signature.size() == signatureSize &&
           crypto_sign_verify_detached(bytesOf(signature), bytesOf(message),
                                       static_cast<unsigned long long>(message.size()), key.data()) == 0;
}

QByteArray sign(const QByteArray& message, const SecretKey& key) {
    startLibrary();
    QByteArray signature(signatureSize, '\0');
    crypto_sign_detached(reinterpret_cast<unsigned char*>(signature.data()), nullptr, bytesOf(message),
                         static_cast<unsigned long long>(message.size()), key.data());
    return signature;
}

SecretKey generateSecretKey() {
    startLibrary();
    PublicKey publicKey{};
    SecretKey secretKey{};
    crypto_sign_keypair(publicKey.data(), secretKey.data());
    return secretKey;
}

PublicKey publicKeyOf(const SecretKey& key) {
    PublicKey publicKey{};
    crypto_sign_ed25519_sk_to_pk(publicKey.data(), key.data());
    return publicKey;
}

}

namespace {

constexpr json::ParseLimits limits{.bytes = 64 * 1024, .depth = 4};

[[noreturn]] void refuse(const QString& reason) {
    throw LicenceError(LicenceFault::invalidLicence, reason);
}

QByteArray decodedBase64(const QByteArray& text) {
    const auto result = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        refuse(QStringLiteral("The licence is damaged: it is not valid Base64."));
    return result.decoded;
}

bool isPlainLine(const QString& text) {
    constexpr qsizetype longest = 200;
    return text.size() <= longest && std::all_of(text.begin(), text.end(), [](QChar character) {
               return character.category() != QChar::Other_Control;
           });
}

void checkContent(const LicenceRecord& record) {
    if (record.format != LicenceRecord::currentFormat())
        refuse(QStringLiteral("The licence is of a form that this version of Pointloom does not know."));
    try {
        if (LicenceKey::parse(record.key).text() != record.key)
            refuse(QStringLiteral("The licence does not name its key in full."));
    } catch (const LicenceError& error) {
        refuse(QStringLiteral("The licence names no valid key: ") + error.message());
    }
    if (!isPlainLine(record.holder) || !isPlainLine(record.id))
        refuse(QStringLiteral("The licence's holder is not one line of text."));
    if (record.expires && *record.expires <= record.issued)
        refuse(QStringLiteral("The licence expires before it was issued."));
}

}

namespace json {

OrderedValue Codec<QDateTime>::encode(const QDateTime& value) {
    return value.toUTC().toString(Qt::ISODate).toStdString();
}

QDateTime Codec<QDateTime>::decode(const Value& value, const Path& path) {
    const QString text = Codec<QString>::decode(value, path);
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    if (!time.isValid() || time.toString(Qt::ISODate) != text || !text.endsWith(u'Z'))
        throw DecodingError(path, "expected a time in UTC such as 2024-05-01T10:00:00Z");
    return time;
}

}

SignedLicence SignedLicence::sign(const LicenceRecord& record, const Ed25519::SecretKey& key) {
    const QByteArray payload = json::compact(json::encode(record));
    return {payload.toBase64(), Ed25519::sign(payload, key).toBase64()};
}

QByteArray SignedLicence::toJson() const {
    json::OrderedValue object;
    object["licence"] = licence.toStdString();
    object["signature"] = signature.toStdString();
    return json::compact(object) + '\n';
}

SignedLicence SignedLicence::fromJson(const QByteArray& bytes) {
    try {
        const json::Value value = json::parse(bytes, limits);
        const auto text = [&](const char* key) {
            return json::decode<QString>(json::requiredMember(value, key, {}), json::Path().key(key))
                .toUtf8();
        };
        return {text("licence"), text("signature")};
    } catch (const json::DecodingError& error) {
        refuse(QStringLiteral("This is not a licence: ") + QString::fromUtf8(error.what()));
    }
}

LicenceRecord SignedLicence::verified(const Ed25519::PublicKey& key) const {
    const QByteArray payload = decodedBase64(licence);
    if (!Ed25519::verify(payload, decodedBase64(signature), key))
        refuse(QStringLiteral(
            "The licence is damaged or was not issued by the seller: its signature does not hold."));
    try {
        const auto record = json::decode<LicenceRecord>(json::parse(payload, limits));
        checkContent(record);
        return record;
    } catch (const json::DecodingError& error) {
        refuse(QStringLiteral("The licence cannot be read: ") + QString::fromUtf8(error.what()));
    }
}

}
