// Walks through every screen with a project and takes a picture of each.
#pragma once

#include "licensing/LicenceManager.h"
#include "persistence/UserDefaults.h"
#include "ui/common/UiContext.h"
#include "ui/export/ExportRunner.h"
#include "ui/style/Theme.h"

#include <functional>
#include <memory>
#include <QSize>
#include <QTemporaryDir>
#include <vector>

class QWidget;

namespace pointloom::samples {

struct TourOptions {
    QString project;
    QString folder; // pictures go to FOLDER/THEME/LANGUAGE/SCREEN.png
    std::vector<Language> languages;
    std::vector<ThemeChoice> themes;
    QStringList screens; // of those alone; empty: of all
    QSize window;
};

/// A session of its own, which leaves the user's alone. Throws std::runtime_error when a screen does not
/// come to be or a picture cannot be written.
class ScreenTour {
public:
    explicit ScreenTour(TourOptions options);

    void run();

private:
    void readVideo();
    void chooseWatermark();
    void takeWindow();
    void takeExport();
    void takeFramePreview();
    void takeSheets();
    void takeConsent();

    bool wants(const QString& screen) const;
    /// In every language.
    void take(QWidget& screen, const QString& name);
    void save(QWidget& screen, const QString& name) const;
    void waitUntilStill(QWidget& screen) const;
    void waitUntil(const QString& what, const std::function<bool()>& isSo) const;

    TourOptions m_options;
    ThemeChoice m_theme = ThemeChoice::dark;
    QTemporaryDir m_scratch;
    AppState m_state;
    ExportRunner m_exports{m_state};
    UndoStack m_undo;
    UserDefaults m_defaults;
    DesktopDialogs m_dialogs{m_state, m_defaults};
    CommandKeys m_keys;
    UiContext m_context{m_state, m_undo, m_defaults, m_dialogs, m_keys};
    LicenceManager m_licence;
};

}
