#include "crash/SentryDSN.h"

#include <algorithm>

namespace pointloom {

namespace {

bool isSafeInHeaders(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character > u' ' && character < u'\x7f' && character != u'"' && character != u'\\' &&
               character != u',';
    });
}

}

std::optional<SentryDSN> SentryDSN::parse(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    if (!isSafeInHeaders(text) || !url.isValid() || url.userName().isEmpty() || url.host().isEmpty())
        return std::nullopt;
    const QString key = url.userName(QUrl::FullyDecoded);
    const QString project = url.path(QUrl::FullyEncoded).section(u'/', 0, 0, QString::SectionSkipEmpty);
    if (project.isEmpty() || !isSafeInHeaders(key))
        return std::nullopt;
    const QString scheme = url.scheme().isEmpty() ? QStringLiteral("https") : url.scheme();
    if (scheme != u"https" && scheme != u"http")
        return std::nullopt;
    QUrl envelope;
    envelope.setScheme(scheme);
    envelope.setHost(url.host());
    envelope.setPath(QStringLiteral("/api/%1/envelope/").arg(project), QUrl::StrictMode);
    if (!envelope.isValid())
        return std::nullopt;
    return SentryDSN{envelope, key, text};
}

}
