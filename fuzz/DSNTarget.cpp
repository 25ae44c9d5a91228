// Any bytes as the address of a crash-collection service: refused, or fit for a request's line and headers.
#include "crash/CrashEvent.h"
#include "FuzzTarget.h"

#include <algorithm>

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(fuzz::bytesOf(data, size));
    const std::optional<SentryDSN> dsn = SentryDSN::parse(text);
    if (!dsn)
        return 0;
    const QUrl& url = dsn->envelopeURL;
    fuzz::require(url.isValid() && !url.host().isEmpty(), "the address is valid");
    fuzz::require(url.scheme() == u"https" || url.scheme() == u"http", "the address is one of HTTP");
    fuzz::require(url.userInfo().isEmpty() && !url.hasQuery() && !url.hasFragment(),
                  "the key is not part of it");
    const QString path = url.path(QUrl::FullyEncoded);
    fuzz::require(path.startsWith(u"/api/") && path.endsWith(u"/envelope/") && path.count(u'/') == 4,
                  "the path has the form /api/PROJECT/envelope/");
    fuzz::require(dsn->rawDSN == text && !dsn->publicKey.isEmpty(), "the text is kept");
    for (const QString& header : {dsn->rawDSN, dsn->publicKey})
        fuzz::require(
            std::ranges::all_of(header, [](QChar c) { return c > u' ' && c < u'\x7f' && c != u'"'; }),
            "headers have neither spaces nor quotes");
    return 0;
}
