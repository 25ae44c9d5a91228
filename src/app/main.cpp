// The desktop program.
#include "app/App.h"

#include <clocale>
#include <csignal>
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>

namespace {

QStringList filesOf(const QApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Burns a live scoreboard into match videos.")); // not translated
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("file"),
                                 QStringLiteral("A project (.plp) or a video to open."), // not translated
                                 QStringLiteral("[file]"));
    parser.process(application);
    QStringList files;
    for (const QString& file : parser.positionalArguments())
        files.append(QFileInfo(file).absoluteFilePath());
    return files;
}

}

int main(int argc, char** argv) {
    // A write beyond the allowed file size then fails with an error instead of ending the process.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication application(argc, argv);
    // QApplication set the user's locale; a decimal comma would break every number in the chains of filters.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("Pointloom"));
    QApplication::setApplicationVersion(QStringLiteral(POINTLOOM_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.pointloom.Pointloom"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/app/pointloom.svg")));
    return pointloom::App::run(application, filesOf(application));
}
