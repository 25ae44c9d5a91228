// Starts the benchmarks that need widgets. Without a screen.
#include "ui/style/Theme.h"

#include <benchmark/benchmark.h>
#include <QApplication>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    pointloom::Theme::shared().apply(application, pointloom::ThemeChoice::dark);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
