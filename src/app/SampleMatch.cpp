#include "app/SampleMatch.h"

#include "persistence/MarkerFile.h"
#include "persistence/ProjectSession.h"
#include "sample/Match.h"
#include "sample/SampleClip.h"

#include <QDir>
#include <QFileInfo>
#include <QProgressDialog>
#include <QStandardPaths>

namespace pointloom {

namespace {

const sample::ClipOptions sampleClip{.seconds = 22, .framesPerSecond = 25};
constexpr int progressSteps = 1000;

MatchConfig sampleConfig() {
    MatchConfig config;
    config.team1 = {QStringLiteral("A. Moreau"), {}, QStringLiteral("FR"), {}}; // not translated
    config.team2 = {QStringLiteral("L. Ortega"), {}, QStringLiteral("ES"), {}}; // not translated
    config.numberOfSets = 3;
    return config;
}

std::vector<Marker> sampleMarkers(const MatchConfig& config) {
    const QByteArray table = sample::Match(sampleClip.seconds).markersCsv(sampleClip.seconds);
    std::vector<Marker> markers =
        MarkerFile::decode(table, SampleMatch::videoPath(), MatchStart::of(config)).markersAlone();
    for (Marker& marker : markers)
        marker.label.reset(); // in English
    return markers;
}

}

SampleMatch::SampleMatch(const UiContext& context, QWidget* window)
    : m_context(context)
    , m_window(window) {}

SampleMatch::~SampleMatch() = default;

// The number rises with each change of what is drawn.
QString SampleMatch::videoPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Pointloom/sample-match-1.mp4");
}

ProjectFile SampleMatch::project() {
    ProjectFile project = projectFrom(AppState());
    project.selectedSport = SportID::tennis;
    project.selectedTemplate = TemplateID::broadcast;
    project.matchConfig = sampleConfig();
    project.markers = sampleMarkers(*project.matchConfig);
    project.initialScore = project.markers.front().score; // the first is at 0
    project.markers.erase(project.markers.begin());
    project.videoPath = videoPath();
    return project;
}

void SampleMatch::prepare() {
    if (QFileInfo(videoPath()).isFile())
        Q_EMIT ready();
    else if (!m_progress)
        draw();
}

void SampleMatch::draw() {
    m_progress = std::make_unique<QProgressDialog>(m_window);
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setWindowTitle(m_context.text(L10nKey::commandOpenSample));
    m_progress->setLabelText(m_context.text(L10nKey::sampleDrawing) + u'\n' +
                             m_context.text(L10nKey::sampleDrawingOnce));
    m_progress->setCancelButtonText(m_context.text(L10nKey::cancel));
    m_progress->setRange(0, progressSteps);
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    connect(m_progress.get(), &QProgressDialog::canceled, this, [this] {
        m_worker.cancel();
        m_progress.release()->deleteLater(); // it is the sender
    });
    constexpr int narrowest = 360; // points
    m_progress->setMinimumWidth(narrowest);
    m_progress->adjustSize();
    placeOverWindow(*m_progress);
    m_progress->show();

    m_worker.start([this, path = videoPath()](BackgroundWorker::Link link) {
        const auto report = [&](double fraction) {
            link.post([this, fraction] { m_progress->setValue(static_cast<int>(fraction * progressSteps)); });
            return !link.isCancelled();
        };
        QString fault;
        try {
            QDir().mkpath(QFileInfo(path).absolutePath());
            (void)sample::writeClip(path, sample::Match(sampleClip.seconds), sampleClip, report);
        } catch (const std::exception& error) {
            fault = QString::fromUtf8(error.what());
        }
        link.post([this, fault] { finish(fault); });
    });
}

void SampleMatch::finish(const QString& fault) {
    m_progress.reset();
    if (fault.isEmpty())
        Q_EMIT ready();
    else
        m_context.dialogs.alert(m_window, m_context.text(L10nKey::sampleFailed), fault);
}

}
