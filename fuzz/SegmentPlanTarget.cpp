// Any bytes as a plan of segments, whose checksum is made to fit. A plan that is accepted is consistent and
// is the same after writing and reading again.
#include "export/segments/SegmentPlan.h"
#include "FuzzTarget.h"
#include "json/JsonDocument.h"

#include <QCryptographicHash>

namespace pointloom::fuzz {

namespace {

const QString path = QStringLiteral("match.plan");
const QString program = QStringLiteral("1.0");

/// The plan that `bytes` hold, as if this program had made it.
std::optional<SegmentPlan> planOf(const QByteArray& bytes) {
    try {
        auto plan = json::decode<SegmentPlan>(json::parse(bytes));
        plan.program = program;
        plan.checksum.clear();
        const QByteArray text = json::compact(json::encode(plan));
        plan.checksum =
            QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
        return plan;
    } catch (const json::DecodingError&) {
        return std::nullopt;
    }
}

void tryPlan(const SegmentPlan& plan) {
    const QByteArray written = json::prettySorted(json::encode(plan));
    require(SegmentPlan::decode(written, path, program) == plan, "a plan reads as it was written");
    for (int number = 1; number <= plan.count(); ++number) {
        (void)plan.window(number);
        (void)plan.offset(number);
    }
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pointloom::fuzz;
    const QByteArray bytes = bytesOf(data, size);
    try {
        if (const auto plan = planOf(bytes))
            tryPlan(*plan);
        else
            (void)pointloom::SegmentPlan::decode(bytes, path, program);
    } catch (const pointloom::PlanError& error) {
        requireReadable(error.what(), "match.plan: ");
    }
    return 0;
}
