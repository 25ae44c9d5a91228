#include "licensing/Ed25519.h"

#include <algorithm>
#include <sodium.h>
#include <stdexcept>

namespace pointloom::Ed25519 {

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
