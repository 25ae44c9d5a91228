// Any bytes as the body of the licence service's answer, at each kind of status.
#include "FuzzTarget.h"
#include "http/HttpPost.h"
#include "licensing/LicenceClient.h"
#include "licensing/LicenceKey.h"
#include "licensing/LicenceRecord.h"

using namespace pointloom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray body = fuzz::bytesOf(data, size);
    for (const int status : {200, 403, 500}) {
        for (const bool isComplete : {true, false}) {
            try {
                const QByteArray accepted = LicenceClient::decode({status, body, isComplete, {}});
                fuzz::require(status == 200 && isComplete, "only a whole answer to success is one");
                (void)SignedLicence::fromJson(accepted);
            } catch (const LicenceError& error) {
                fuzz::requireReadable(error.what());
            }
        }
    }
    return 0;
}
