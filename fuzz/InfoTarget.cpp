// Any bytes as an Info.json: its texts, or an empty dictionary.
#include "FuzzTarget.h"
#include "info/InfoDictionary.h"

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const InfoDictionary info = InfoDictionary::fromJson(fuzz::bytesOf(data, size));
    const auto version = info.text("CFBundleShortVersionString");
    fuzz::require(info.shortVersion() == version.value_or(QStringLiteral("0")), "a missing version is 0");
    (void)info.buildNumber();
    for (const char* key : {"LicenseServiceURL", "LicensePublicKey", "SentryDSN"})
        (void)info.text(key);
    return 0;
}
