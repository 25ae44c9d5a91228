// screenshots PROJECT.plp FOLDER: pictures of every screen, without a window on the desktop.
#include "ScreenTour.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <QApplication>

namespace {

using namespace pointloom;

constexpr QSize usualWindow(1280, 800);

const std::vector<std::string> bothThemes = {"dark", "light"};

std::vector<std::string> allLanguages() {
    std::vector<std::string> names;
    for (const auto& [language, name] : RawValues<Language>::table)
        names.emplace_back(name);
    return names;
}

// The names were held to the choices by the parser.
template <class Value>
std::vector<Value> valuesOf(const std::vector<std::string>& names) {
    std::vector<Value> values;
    for (const std::string& name : names)
        values.push_back(fromRawValue<Value>(name).value());
    return values;
}

}

int main(int argc, char** argv) {
    CLI::App command("Takes a picture of every screen.");
    std::string project;
    std::string folder;
    std::vector<std::string> languages = allLanguages();
    std::vector<std::string> themes = bothThemes;
    std::vector<std::string> screens;
    std::pair<int, int> window{usualWindow.width(), usualWindow.height()};
    command.add_option("project", project, "A project with its video")->required()->check(CLI::ExistingFile);
    command.add_option("folder", folder, "Where pictures go: FOLDER/THEME/LANGUAGE/SCREEN.png")->required();
    command.add_option("--language", languages, "Of these languages alone")
        ->check(CLI::IsMember(allLanguages()));
    command.add_option("--theme", themes, "In these themes alone")->check(CLI::IsMember(bothThemes));
    command.add_option("--screen", screens, "Of these screens alone");
    command.add_option("--window", window, "Size of the window in points")->capture_default_str();
    CLI11_PARSE(command, argc, argv);

    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("POINTLOOM_RENDERING", "software"); // pictures drawn by OpenGL cannot be taken
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pointloom"));

    samples::TourOptions options;
    options.project = QString::fromStdString(project);
    options.folder = QString::fromStdString(folder);
    options.languages = valuesOf<Language>(languages);
    options.themes = valuesOf<ThemeChoice>(themes);
    for (const std::string& screen : screens)
        options.screens << QString::fromStdString(screen);
    options.window = QSize(window.first, window.second);
    try {
        samples::ScreenTour(options).run();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "screenshots: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
