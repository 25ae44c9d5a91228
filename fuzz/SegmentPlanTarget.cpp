// Any bytes as a plan of segments, and as one whose checksum was made to fit. A plan that is accepted hangs
// together and is the same after writing and reading again.
#include "export/SegmentPlan.h"
#include "FuzzTarget.h"
#include "json/JsonDocument.h"

#include <QCryptographicHash>

namespace pointloom::fuzz {

namespace {

const QString path = QStringLiteral("match.plan");
const QString program = QStringLiteral("1.0");

/// The plan with the checksum of its own content; empty for what is no plan.
QByteArray withFittingChecksum(const QByteArray& bytes) {
    try {
        auto plan = json::decode<SegmentPlan>(json::parse(bytes));
        plan.program = program;
        plan.checksum.clear();
        const QByteArray text = json::compact(json::encode(plan));
        plan.checksum =
            QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
        return json::prettySorted(json::encode(plan));
    } catch (const json::DecodingError&) {
        return {};
    }
}

void tryPlan(const QByteArray& bytes) {
    try {
        const SegmentPlan plan = SegmentPlan::decode(bytes, path, program);
        const QByteArray written = json::prettySorted(json::encode(plan));
        require(SegmentPlan::decode(written, path, program) == plan, "a plan reads as it was written");
        (void)plan.job();
        for (int number = 1; number <= plan.count(); ++number) {
            (void)plan.window(number);
            (void)plan.offset(number);
        }
    } catch (const PlanError& error) {
        requireReadable(error.what(), "match.plan: ");
    }
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pointloom::fuzz;
    const QByteArray bytes = bytesOf(data, size);
    tryPlan(bytes);
    if (const QByteArray fitting = withFittingChecksum(bytes); !fitting.isEmpty())
        tryPlan(fitting);
    return 0;
}
