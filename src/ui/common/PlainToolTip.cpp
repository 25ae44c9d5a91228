#include "ui/common/PlainToolTip.h"

namespace pointloom {

QString plainToolTip(const QStringList& lines) {
    QString markup;
    for (const QString& line : lines)
        markup += QStringLiteral("<div style=\"white-space: pre\">%1</div>").arg(line.toHtmlEscaped());
    return markup;
}

}
