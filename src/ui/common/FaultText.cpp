#include "ui/common/FaultText.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"

namespace pointloom {

namespace {

struct Sentence {
    L10nKey text;
    bool saysAll; // the reason would only repeat it
};

Sentence sentenceFor(media::MediaFault fault) {
    using media::MediaFault;
    switch (fault) {
    case MediaFault::missing:
        return {L10nKey::faultMissing, true};
    case MediaFault::notAFile:
        return {L10nKey::faultNotAFile, true};
    case MediaFault::empty:
        return {L10nKey::faultEmpty, true};
    case MediaFault::noPermission:
        return {L10nKey::faultNoPermission, false};
    case MediaFault::notAVideo:
        return {L10nKey::faultNotAVideo, true};
    case MediaFault::damaged:
        return {L10nKey::faultDamaged, false};
    case MediaFault::cutShort:
        return {L10nKey::faultCutShort, true};
    case MediaFault::noPicture:
        return {L10nKey::faultNoPicture, true};
    case MediaFault::nothingInRange:
        return {L10nKey::faultNothingInRange, false};
    case MediaFault::unsupportedCodec:
        return {L10nKey::faultUnsupportedCodec, false};
    case MediaFault::replaced:
        return {L10nKey::faultReplaced, true};
    case MediaFault::diskFull:
        return {L10nKey::faultDiskFull, true};
    case MediaFault::other:
        break;
    }
    return {L10nKey::faultCannotBeRead, false};
}

}

FaultText faultText(media::MediaFault fault, const QString& fileName, const QString& reason,
                    Language language) {
    const Sentence sentence = sentenceFor(fault);
    return {format(t(language, sentence.text), fileName), sentence.saysAll ? QString() : reason};
}

}
