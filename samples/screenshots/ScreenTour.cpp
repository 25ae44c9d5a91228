#include "ScreenTour.h"

#include "app/MainWindow.h"
#include "licensing/RecordStore.h"
#include "persistence/ProjectSession.h"
#include "ui/common/VideoImport.h"
#include "ui/export/ExportSheet.h"
#include "ui/export/FramePreview.h"
#include "ui/settings/AboutDialog.h"
#include "ui/settings/HelpDialog.h"
#include "ui/settings/KeysDialog.h"
#include "ui/settings/LicenceDialog.h"
#include "ui/settings/NewsDialog.h"
#include "ui/settings/PreferencesDialog.h"
#include "ui/wizard/BoardDialog.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <stdexcept>

namespace pointloom::samples {

namespace {

constexpr std::string_view consentAskedKey = "crashConsentAsked";
constexpr int settleTime = 250;  // milliseconds, for layouts and the last of the animations
constexpr int windowTime = 2500; // for pictures, thumbnails and waveforms made in the background
constexpr int longest = 120'000;

void settle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

LicenceManager::Parts partsWithoutLicence(const QString& folder) {
    LicenceManager::Parts parts;
    parts.store = std::make_unique<FileRecordStore>(folder + QStringLiteral("/licence"));
    parts.machineId = "sample";
    return parts;
}

bool hasStill(const QDialog& dialog) {
    const auto* view = dialog.findChild<StillView*>();
    return view && !view->still().isNull();
}

void press(const QDialog& dialog, const char* button) {
    dialog.findChild<QPushButton*>(QString::fromUtf8(button))->click();
}

}

ScreenTour::ScreenTour(TourOptions options)
    : m_options(std::move(options))
    , m_defaults(m_scratch.filePath(QStringLiteral("settings.conf")))
    , m_licence(partsWithoutLicence(m_scratch.path())) {
    const OpenReport report = openProject(m_options.project, m_state);
    if (!report.missing.empty())
        throw std::runtime_error("the project names a file that is not there: " +
                                 report.missing.front().storedPath.toStdString());
    m_licence.load();
    m_defaults.setBoolean(consentAskedKey, true); // until its turn comes
}

void ScreenTour::run() {
    readVideo();
    chooseWatermark();
    for (const ThemeChoice theme : m_options.themes) {
        m_theme = theme;
        Theme::shared().apply(*qApp, theme);
        takeWindow();
        takeFramePreview();
        takeExport();
        takeSheets();
        takeConsent();
    }
}

void ScreenTour::readVideo() {
    VideoImport import(m_context);
    QString fault;
    QObject::connect(&import, &VideoImport::failed, &import,
                     [&](const QString& message) { fault = message; });
    import.start(m_state.videoURL.value()->toLocalFile());
    waitUntil(QStringLiteral("video"), [&] { return !import.isReading(); });
    if (!fault.isEmpty())
        throw std::runtime_error(fault.toStdString());
}

// A club's badge, as they tend to look.
void ScreenTour::chooseWatermark() {
    QImage badge(240, 240, QImage::Format_ARGB32_Premultiplied);
    badge.fill(Qt::transparent);
    QPainter painter(&badge);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 10));
    painter.setBrush(QColor(0x1b, 0x4f, 0x8f));
    painter.drawEllipse(QRectF(10, 10, 220, 220));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(70);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(badge.rect(), Qt::AlignCenter, QStringLiteral("TC\n74"));
    painter.end();
    const QString path = m_scratch.filePath(QStringLiteral("badge.png"));
    badge.save(path);
    m_state.watermarkURL = QUrl::fromLocalFile(path);
}

void ScreenTour::takeWindow() {
    const std::vector<std::pair<Screen, QString>> screens = {{Screen::sport, QStringLiteral("sport")},
                                                             {Screen::scoreboard, QStringLiteral("template")},
                                                             {Screen::match, QStringLiteral("match")},
                                                             {Screen::video, QStringLiteral("video")},
                                                             {Screen::editor, QStringLiteral("editor")}};
    MainWindow window(m_context, m_licence, m_exports);
    window.resize(m_options.window);
    window.show();
    for (const auto& [screen, name] : screens) {
        if (!wants(name))
            continue;
        m_state.step = screen;
        settle(windowTime);
        if (screen == Screen::editor) {
            const auto& markers = m_state.markers.value();
            const Marker& shown = markers[markers.size() / 2];
            m_state.currentTime = shown.startTime + 0.5;
            m_state.selectedMarkerID = shown.id;
            settle(windowTime);
            waitUntilStill(window);
        }
        take(window, name);
    }
    m_state.step = Screen::editor;
}

void ScreenTour::takeFramePreview() {
    const QString name = QStringLiteral("frame-preview");
    if (!wants(name))
        return;
    FramePreview preview(m_context, nullptr);
    preview.show();
    waitUntil(name, [&] { return hasStill(preview); });
    take(preview, name);
}

void ScreenTour::takeExport() {
    const QString options = QStringLiteral("export");
    const QString progress = QStringLiteral("export-progress");
    const QString done = QStringLiteral("export-done");
    if (!wants(options) && !wants(progress) && !wants(done))
        return;
    // The sheet proposes a file in the downloads of the home folder, which is not this tour's to fill.
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", m_scratch.path().toUtf8());
    {
        ExportSheet sheet(m_context, m_exports, nullptr);
        sheet.show();
        waitUntil(options, [&] { return hasStill(sheet); });
        if (wants(options))
            take(sheet, options);
        if (wants(progress) || wants(done)) {
            press(sheet, "startExport");
            waitUntil(progress, [&] { return m_state.exportProgress.value() > 0.3 || !sheet.isExporting(); });
            settle(settleTime);
            if (wants(progress))
                take(sheet, progress);
            waitUntil(done, [&] { return !sheet.isExporting(); });
            if (wants(done))
                take(sheet, done);
        }
    }
    qputenv("HOME", home);
}

void ScreenTour::takeSheets() {
    // Made anew for each language: some are told it once.
    const auto takeSheet = [this](const QString& name, const auto& make) {
        if (!wants(name))
            return;
        for (const Language language : m_options.languages) {
            m_state.language = language;
            const std::unique_ptr<QDialog> sheet = make();
            sheet->show();
            settle(settleTime);
            save(*sheet, name);
        }
        m_state.language = m_options.languages.front();
    };
    takeSheet(QStringLiteral("preferences"),
              [this] { return std::make_unique<PreferencesDialog>(m_context, nullptr); });
    takeSheet(QStringLiteral("keys"), [this] { return std::make_unique<KeysDialog>(m_context, nullptr); });
    takeSheet(QStringLiteral("help"), [this] { return std::make_unique<HelpDialog>(m_context, nullptr); });
    takeSheet(QStringLiteral("news"),
              [this] { return std::make_unique<NewsDialog>(m_context, QVersionNumber(), nullptr); });
    takeSheet(QStringLiteral("about"), [this] { return std::make_unique<AboutDialog>(m_context, nullptr); });
    takeSheet(QStringLiteral("licence"),
              [this] { return std::make_unique<LicenceDialog>(m_context, m_licence, nullptr); });
    takeSheet(QStringLiteral("board"), [this] {
        const BoardFile board{
            .base = TemplateID::classic,
            .board = {.name = QStringLiteral("TC 74"), .colors = {.main = BoardColor{0x0B, 0x5D, 0x3B}}}};
        return std::make_unique<BoardDialog>(m_context, board, *m_state.matchConfig.value(), true, nullptr);
    });
}

// The question runs an event loop of its own.
void ScreenTour::takeConsent() {
    const QString name = QStringLiteral("consent");
    if (!wants(name))
        return;
    m_defaults.remove(consentAskedKey);
    MainWindow window(m_context, m_licence, m_exports);
    bool isTaken = false;
    QTimer::singleShot(2 * settleTime, &window, [&] {
        QWidget* question = QApplication::activeModalWidget();
        if (!question)
            return;
        take(*question, name);
        question->close();
        isTaken = true;
    });
    window.show();
    window.content().askForCrashConsentOnce();
    waitUntil(name, [&] { return isTaken; });
}

bool ScreenTour::wants(const QString& screen) const {
    return m_options.screens.isEmpty() || m_options.screens.contains(screen);
}

void ScreenTour::take(QWidget& screen, const QString& name) {
    for (const Language language : m_options.languages) {
        m_state.language = language;
        settle(settleTime);
        save(screen, name);
    }
    m_state.language = m_options.languages.front();
}

void ScreenTour::save(QWidget& screen, const QString& name) const {
    const QString folder = QStringLiteral("%1/%2/%3")
                               .arg(m_options.folder, QString::fromUtf8(rawValue(m_theme)),
                                    QString::fromUtf8(rawValue(m_state.language.value())));
    const QString path = QStringLiteral("%1/%2.png").arg(folder, name);
    if (!QDir().mkpath(folder) || !screen.grab().save(path))
        throw std::runtime_error(path.toStdString() + ": cannot be written");
}

// Thumbnails and waveforms come as the machine finds the time.
void ScreenTour::waitUntilStill(QWidget& screen) const {
    QElapsedTimer clock;
    clock.start();
    QImage last;
    for (int stillFor = 0; stillFor < windowTime && clock.elapsed() < longest; stillFor += settleTime) {
        settle(settleTime);
        QImage now = screen.grab().toImage();
        if (now != last)
            stillFor = 0;
        last = std::move(now);
    }
}

void ScreenTour::waitUntil(const QString& what, const std::function<bool()>& isSo) const {
    QElapsedTimer clock;
    clock.start();
    while (!isSo()) {
        if (clock.elapsed() > longest)
            throw std::runtime_error(what.toStdString() + ": the screen never got ready");
        settle(20);
    }
}

}
