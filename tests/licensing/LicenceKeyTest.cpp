#include "licensing/LicenceKey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pointloom {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr QStringView symbols = u"0123456789ABCDEFGHJKMNPQRSTVWXYZ";

std::string refusalOf(const QString& text) {
    try {
        LicenceKey::parse(text);
    } catch (const LicenceError& error) {
        EXPECT_EQ(error.fault(), LicenceFault::malformedKey);
        return error.what();
    }
    return {};
}

TEST(LicenceKey, IsReadAsPeopleWriteIt) {
    const LicenceKey key = LicenceKey::generate();
    EXPECT_THAT(key.text().toStdString(), MatchesRegex("PL(-[0-9A-HJKMNP-TV-Z]{5}){4}"));
    QString bare = key.text();
    bare.remove(u'-');
    const auto with = [&](QChar before, QChar after) { return QString(key.text()).replace(before, after); };
    const QString written[] = {
        key.text(),
        QStringLiteral("  \t%1\r\n").arg(key.text()),
        bare,
        key.text().toLower(),
        bare.mid(2),
        with(u'-', u' '),
        with(u'-', u'–'),
        with(u'0', u'o'),
        with(u'1', u'i'),
        QStringLiteral("PL") + key.text().mid(2).replace(u'1', u'L'),
    };
    for (const QString& text : written)
        EXPECT_EQ(LicenceKey::parse(text), key) << qPrintable(text);
    EXPECT_NE(LicenceKey::generate(), key);
    EXPECT_EQ(key.masked(), QStringLiteral("PL-…-") + key.text().right(5));
}

TEST(LicenceKey, EveryWrongSymbolIsFound) {
    const QString key = LicenceKey::generate().text();
    for (qsizetype at = 3; at < key.size(); ++at) {
        for (const QChar symbol : symbols) {
            if (key[at] == u'-' || key[at] == symbol)
                continue;
            QString wrong = key;
            wrong[at] = symbol;
            EXPECT_THAT(refusalOf(wrong), HasSubstr("slip")) << qPrintable(wrong);
        }
    }
}

TEST(LicenceKey, TheRefusalSaysWhatIsWrong) {
    EXPECT_THAT(refusalOf(QString()), HasSubstr("Enter the licence key"));
    EXPECT_THAT(refusalOf(QStringLiteral("   ")), HasSubstr("Enter the licence key"));
    EXPECT_THAT(refusalOf(QStringLiteral("PL-12345")),
                HasSubstr("20 letters and digits after “PL”, and this one has 5"));
    EXPECT_THAT(refusalOf(QStringLiteral("PL-1234U")), HasSubstr("no “U”"));
    EXPECT_THAT(refusalOf(QStringLiteral("PL-1234\x01")), HasSubstr("no “?”"));
    EXPECT_FALSE(refusalOf(QString(1'000'000, u'A')).empty());
}

}
}
