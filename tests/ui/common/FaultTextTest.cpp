#include "ui/common/FaultText.h"

#include <gtest/gtest.h>
#include <QSet>

namespace pointloom {

namespace {

using media::MediaFault;

constexpr MediaFault faults[] = {
    MediaFault::other,        MediaFault::missing,        MediaFault::notAFile,         MediaFault::empty,
    MediaFault::noPermission, MediaFault::notAVideo,      MediaFault::damaged,          MediaFault::cutShort,
    MediaFault::noPicture,    MediaFault::nothingInRange, MediaFault::unsupportedCodec, MediaFault::replaced,
    MediaFault::diskFull};

}

TEST(FaultText, EveryFaultHasASentenceOfItsOwnInEveryLanguage) {
    for (const Language language : allCases<Language>()) {
        QSet<QString> sentences;
        for (const MediaFault fault : faults) {
            const QString sentence = faultText(fault, QStringLiteral("final.mp4"), {}, language).sentence;
            EXPECT_FALSE(sentence.contains(QStringLiteral("%@"))) << qPrintable(sentence);
            EXPECT_EQ(sentence.contains(QStringLiteral("final.mp4")), fault != MediaFault::diskFull)
                << qPrintable(sentence);
            sentences.insert(sentence);
        }
        EXPECT_EQ(sentences.size(), std::ssize(faults));
    }
}

TEST(FaultText, TheTechnicalReasonFollowsWhereItSaysMore) {
    const QString reason = QStringLiteral("there is no decoder for apv");
    const FaultText codec =
        faultText(MediaFault::unsupportedCodec, QStringLiteral("a.mov"), reason, Language::german);
    EXPECT_EQ(codec.lines(), codec.sentence + u'\n' + reason);
    const FaultText missing =
        faultText(MediaFault::missing, QStringLiteral("a.mov"), QStringLiteral("no such file"), {});
    EXPECT_EQ(missing.lines(), missing.sentence);
}

}
