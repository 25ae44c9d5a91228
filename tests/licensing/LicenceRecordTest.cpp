#include "licensing/LicenceRecord.h"
#include "licensing/LicenceFixture.h"
#include "licensing/LicenceKey.h"
#include "json/JsonDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pointloom {
namespace {

using testing::HasSubstr;

const Ed25519::SecretKey& secret() {
    static const auto key = Ed25519::generateSecretKey();
    return key;
}

LicenceRecord someRecord() {
    return {.format = LicenceRecord::currentFormat(),
            .id = QStringLiteral("7d0a"),
            .key = LicenceKey::generate().text(),
            .fingerprint = QString(64, u'a'),
            .holder = QStringLiteral("Ana Pérez"),
            .issued = QDateTime::fromString(QStringLiteral("2024-05-01T10:00:00Z"), Qt::ISODate),
            .expires = QDateTime::fromString(QStringLiteral("2025-05-01T10:00:00Z"), Qt::ISODate),
            .nonce = {}};
}

// Empty when the licence is taken for good.
std::string refusalOf(const SignedLicence& licence, const Ed25519::SecretKey& key = secret()) {
    try {
        licence.verified(Ed25519::publicKeyOf(key));
    } catch (const LicenceError& error) {
        EXPECT_EQ(error.fault(), LicenceFault::invalidLicence);
        return error.what();
    }
    return {};
}

SignedLicence signedBytes(const QByteArray& payload) {
    return {payload.toBase64(), Ed25519::sign(payload, secret()).toBase64()};
}

// RFC 8032, section 7.1, test 2.
TEST(Ed25519, AgreesWithItsStandard) {
    const QByteArray seed =
        QByteArray::fromHex("4ccd089b28ff96da9db6c346ec114e0f5b8a319f35aba624da8cf6ed4fb8a6fb");
    const QByteArray point =
        QByteArray::fromHex("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c");
    const auto key = Ed25519::secretKeyFromBase64((seed + point).toBase64());
    ASSERT_TRUE(key);
    const QByteArray signature = Ed25519::sign("\x72", *key);
    EXPECT_EQ(signature.toHex(), "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
                                 "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00");
    EXPECT_TRUE(Ed25519::verify("\x72", signature, Ed25519::publicKeyOf(*key)));
    EXPECT_FALSE(Ed25519::verify("\x73", signature, Ed25519::publicKeyOf(*key)));
    EXPECT_FALSE(Ed25519::publicKeyFromBase64(point.left(31).toBase64()));
    EXPECT_FALSE(Ed25519::publicKeyFromBase64("not Base64!"));
}

TEST(LicenceRecord, SurvivesItsFileForm) {
    const LicenceRecord record = someRecord();
    const auto licence = SignedLicence::sign(record, secret());
    EXPECT_EQ(SignedLicence::fromJson(licence.toJson()), licence);
    EXPECT_EQ(licence.verified(Ed25519::publicKeyOf(secret())), record);
}

TEST(LicenceRecord, AnyBitChangedIsNoticed) {
    const auto licence = SignedLicence::sign(someRecord(), secret());
    const QByteArray payload = QByteArray::fromBase64(licence.licence);
    for (qsizetype at = 0; at < payload.size(); ++at) {
        QByteArray changed = payload;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_THAT(refusalOf({changed.toBase64(), licence.signature}), HasSubstr("signature"));
    }
    const QByteArray signature = QByteArray::fromBase64(licence.signature);
    for (qsizetype at = 0; at < signature.size(); ++at) {
        QByteArray changed = signature;
        changed[at] = static_cast<char>(changed[at] ^ 0x80);
        EXPECT_THAT(refusalOf({licence.licence, changed.toBase64()}), HasSubstr("signature"));
    }
    for (qsizetype size = 0; size < signature.size(); ++size)
        EXPECT_THAT(refusalOf({licence.licence, signature.left(size).toBase64()}), HasSubstr("signature"));
    EXPECT_THAT(refusalOf(licence, Ed25519::generateSecretKey()), HasSubstr("signature"));
}

TEST(LicenceRecord, WhatIsSignedMustBeARecord) {
    const QByteArray good = json::compact(json::encode(someRecord()));
    EXPECT_EQ(refusalOf(signedBytes(good)), "");
    const auto with = [&](const char* key, const json::Value& value) {
        auto object = json::Value::parse(good.toStdString());
        object[key] = value;
        return signedBytes(QByteArray::fromStdString(object.dump()));
    };
    EXPECT_THAT(refusalOf(with("format", "pointloom-licence-2")), HasSubstr("does not know"));
    EXPECT_THAT(refusalOf(with("key", "PL-1")), HasSubstr("key"));
    EXPECT_THAT(refusalOf(with("holder", "a\nb")), HasSubstr("one line"));
    EXPECT_THAT(refusalOf(with("holder", std::string(500, 'a'))), HasSubstr("one line"));
    EXPECT_THAT(refusalOf(with("issued", "yesterday")), HasSubstr("issued: expected a time"));
    EXPECT_THAT(refusalOf(with("issued", "2024-05-01T10:00:00+02:00")), HasSubstr("issued: expected a time"));
    EXPECT_THAT(refusalOf(with("expires", "2024-04-01T10:00:00Z")), HasSubstr("before it was issued"));
    EXPECT_THAT(refusalOf(with("fingerprint", 7)), HasSubstr("fingerprint: expected a text"));
    for (const QByteArray& payload :
         {QByteArray(), QByteArray("[]"), QByteArray("\xff\xfe"), QByteArray(50'000, '[')})
        EXPECT_NE(refusalOf(signedBytes(payload)), "");
}

TEST(LicenceRecord, AFileThatIsNoLicenceIsRefusedWithItsPlace) {
    const QByteArray good = SignedLicence::sign(someRecord(), secret()).toJson();
    for (qsizetype size = 0; size + 2 < good.size(); size += 7)
        EXPECT_THROW(SignedLicence::fromJson(good.left(size)), LicenceError) << size;
    for (const char* text : {"", "{}", "[]", R"({"licence": 1, "signature": ""})", R"({"licence": "a"})"})
        EXPECT_THROW(SignedLicence::fromJson(text), LicenceError) << text;
    EXPECT_THROW(SignedLicence::fromJson('"' + QByteArray(100'000, 'a') + '"'), LicenceError);
    EXPECT_THAT(refusalOf({"***", ""}), HasSubstr("Base64"));
}

}
}
