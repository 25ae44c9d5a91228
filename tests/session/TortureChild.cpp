// A process of its own for the torture test: edits until it is killed, or tells what a fresh start finds.
//
//     torture_child edit FOLDER FIRST COUNT    makes COUNT edits from number FIRST on; "saved N" after each
//     torture_child show FOLDER                prints the restored session as JSON
//
// Root may write anywhere: with POINTLOOM_TORTURE_AS_NOBODY in its environment it gives that up first.
#include "persistence/Persistence.h"
#include "session/RandomEdits.h"
#include "json/JsonDocument.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <grp.h>
#include <QCoreApplication>
#include <string>
#include <unistd.h>

using namespace pointloom;

namespace {

constexpr int busy = 3; // exit code: another process holds the session

int run(const QStringList& arguments) {
    const QString mode = arguments.value(1);
    const QString folder = arguments.value(2);
    UserDefaults defaults(folder + QStringLiteral("/Pointloom.ini"));
    const auto lock = SessionLock::tryAcquire(folder);
    if (!lock)
        return busy;
    Persistence persistence(defaults, *lock);
    AppState state(&persistence);
    persistence.load(state);

    if (mode == QStringLiteral("show")) {
        std::puts(json::write(Persistence::Snapshot::of(state)).constData());
        return EXIT_SUCCESS;
    }
    UndoStack undo;
    const std::uint64_t first = arguments.value(3).toULongLong();
    const std::uint64_t end = first + arguments.value(4).toULongLong();
    for (std::uint64_t number = first; number < end; ++number) {
        test::makeEdit(state, undo, number);
        const std::string report = "saved " + std::to_string(number) + '\n';
        // Past any buffer: what has been said survives the process.
        if (::write(STDOUT_FILENO, report.data(), report.size()) < 0)
            return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error like any other
    if (std::getenv("POINTLOOM_TORTURE_AS_NOBODY") && ::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
            ::setresuid(nobody, nobody, nobody) != 0)
            return EXIT_FAILURE;
    }
    const QCoreApplication application(argc, argv);
    return run(QCoreApplication::arguments());
}
