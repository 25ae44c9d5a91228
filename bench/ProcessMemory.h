// The memory of this process.
#pragma once

#include <QFile>
#include <unistd.h>

namespace pointloom {

/// Of the physical memory, in MB; 0 where the system does not tell.
inline double residentMegabytes() {
    QFile statistics(QStringLiteral("/proc/self/statm"));
    if (!statistics.open(QIODevice::ReadOnly))
        return 0;
    const double pages = statistics.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

}
