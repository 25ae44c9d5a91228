// Ed25519 signatures (RFC 8032), by libsodium.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <QByteArray>

namespace pointloom::Ed25519 {

constexpr std::size_t publicKeySize = 32; // bytes
constexpr std::size_t secretKeySize = 64; // bytes, the public key included
constexpr qsizetype signatureSize = 64;   // bytes

using PublicKey = std::array<unsigned char, publicKeySize>;
using SecretKey = std::array<unsigned char, secretKeySize>;

/// From Base64; empty for anything but 32 bytes.
std::optional<PublicKey> publicKeyFromBase64(const QByteArray& text);

/// From Base64; empty for anything but 64 bytes.
std::optional<SecretKey> secretKeyFromBase64(const QByteArray& text);

bool verify(const QByteArray& message, const QByteArray& signature, const PublicKey& key);

QByteArray sign(const QByteArray& message, const SecretKey& key);

/// A fresh key. Throws std::runtime_error when the library cannot start.
SecretKey generateSecretKey();

PublicKey publicKeyOf(const SecretKey& key);

}
