// How the crash reporter speaks: plain lines on the error console.
#pragma once

#include <cstdio>
#include <QString>

namespace pointloom {

inline void printCrashReporterLine(const QString& line) {
    std::fprintf(stderr, "[CrashReporter] %s\n", qUtf8Printable(line));
}

}
