// Tool tips of what comes from a file.
#pragma once

#include <QStringList>

namespace pointloom {

/// Markup that shows the lines as they are: a label must not be taken for markup.
QString plainToolTip(const QStringList& lines);

}
