#include "ui/export/DestinationRow.h"

#include "export/SizeEstimate.h"
#include "files/FreeSpace.h"
#include "ui/export/ExportWords.h"
#include "ui/style/Controls.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <QFileInfo>
#include <QHBoxLayout>

namespace pointloom {

namespace {

constexpr int iconSize = 20;

// The ending decides how the file is written, so a foreign one stays as a part of the name.
QString withExtension(const QString& path, ExportFormat format) {
    const QString ending = QLatin1Char('.') + fileExtension(format);
    return path.endsWith(ending, Qt::CaseInsensitive) ? path : path + ending;
}

QString withExtensionSwapped(const QString& path, ExportFormat from, ExportFormat to) {
    const QString old = QLatin1Char('.') + fileExtension(from);
    return withExtension(path.endsWith(old, Qt::CaseInsensitive) ? path.chopped(old.size()) : path, to);
}

std::optional<std::int64_t> freeBytesAt(QString folder) {
    while (!QFileInfo(folder).isDir() && QFileInfo(folder).absolutePath() != folder)
        folder = QFileInfo(folder).absolutePath();
    return freeBytes(folder);
}

// Reads the disk: for a background thread, as disks may sleep.
ExportFacts gatherFacts(const QString& outputPath) {
    const QString folder = QFileInfo(outputPath).absolutePath();
    return {QFileInfo(folder).isDir(), freeBytesAt(folder)};
}

}

DestinationRow::DestinationRow(const UiContext& context, QWidget* parent)
    : QFrame(parent)
    , m_context(context)
    , m_icon(new QLabel(this))
    , m_heading(Controls::label(Controls::TextRole::quiet, this))
    , m_shownPath(Controls::label(Controls::TextRole::body, this))
    , m_space(Controls::label(Controls::TextRole::quiet, this))
    , m_change(Controls::button(Controls::ButtonKind::normal, this)) {
    build();
    bind();
}

void DestinationRow::build() {
    setProperty("kind", QStringLiteral("card"));
    m_change->setObjectName(QStringLiteral("changeDestination"));
    m_change->setAutoDefault(false);
    m_shownPath->setObjectName(QStringLiteral("destination"));
    m_space->setObjectName(QStringLiteral("space"));
    m_space->setWordWrap(true);
    m_space->setMinimumHeight(m_space->fontMetrics().lineSpacing()); // its text comes later
    // A long path is shortened rather than pushing the buttons out.
    m_shownPath->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    lines->addWidget(m_heading);
    lines->addWidget(m_shownPath);
    lines->addWidget(m_space);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Space::m, Space::s, Space::s, Space::s);
    row->setSpacing(Space::m);
    row->addWidget(m_icon);
    row->addLayout(lines, 1);
    row->addWidget(m_change);
}

void DestinationRow::bind() {
    const auto showIcon = [this] {
        m_icon->setPixmap(
            Icons::pixmap(QStringLiteral("folder"), iconSize, tokens().quietText, devicePixelRatioF()));
    };
    showIcon();
    connect(&Theme::shared(), &Theme::changed, this, showIcon);
    connect(m_change, &QPushButton::clicked, this, &DestinationRow::choose);
    m_bindings.watch(m_context.state.language, [this] { showWords(); });
}

void DestinationRow::showWords() {
    m_heading->setText(m_context.text(L10nKey::saveTo));
    m_change->setText(m_context.text(L10nKey::exportChangeDestination));
    m_change->setAccessibleName(m_context.text(L10nKey::exportChooseDestination));
    showSpace();
}

void DestinationRow::proposeNewFile() {
    m_isProposed = true;
    setPath(defaultOutputPath(m_format));
}

void DestinationRow::setFormat(ExportFormat format) {
    const ExportFormat former = std::exchange(m_format, format);
    if (format != former)
        setPath(withExtensionSwapped(m_path, former, format));
}

void DestinationRow::estimate(const std::optional<ExportJob>& job) {
    m_estimating.cancel();
    m_needed.reset();
    showSpace();
    if (!job)
        return;
    const auto measure = [this, job = *job](BackgroundWorker::Link link) {
        const auto bytes = estimatedBytes(job, [&link] { return link.isCancelled(); });
        link.post([this, bytes] {
            m_needed = bytes;
            showSpace();
        });
    };
    m_estimating.start(measure, BackgroundWorker::Priority::low);
}

void DestinationRow::setPath(const QString& path) {
    m_path = path;
    m_isReplacingAgreed = false;
    showPath();
    gather();
}

void DestinationRow::showPath() {
    const QString whole = ExportWords::path(m_path);
    m_shownPath->setText(m_shownPath->fontMetrics().elidedText(whole, Qt::ElideMiddle, m_shownPath->width()));
    m_shownPath->setAccessibleName(whole);
    m_shownPath->setToolTip(m_path);
}

void DestinationRow::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    layout()->activate();
    showPath();
}

void DestinationRow::gather() {
    m_gathering.start([output = m_path] { return gatherFacts(output); },
                      [this](const ExportFacts& facts) {
                          m_facts = facts;
                          showSpace();
                      });
}

void DestinationRow::showSpace() {
    if (!m_facts)
        return;
    const ExportFacts& facts = *m_facts;
    const std::int64_t needed = m_needed.value_or(0);
    const bool isShort = facts.freeBytes && needed > *facts.freeBytes;
    const bool isFolderMissing = !facts.isFolderThere && !m_isProposed;
    const Language language = m_context.state.language;
    const auto size = [&](std::int64_t bytes) { return ExportWords::bytes(bytes, language); };

    Controls::setRole(m_space,
                      isShort || isFolderMissing ? Controls::TextRole::warning : Controls::TextRole::quiet);
    if (isFolderMissing)
        m_space->setText(
            format(m_context.text(L10nKey::exportFolderMissing), QFileInfo(m_path).absolutePath()));
    else if (!facts.freeBytes)
        m_space->clear();
    else if (isShort)
        m_space->setText(
            format(m_context.text(L10nKey::exportSpaceShort), size(needed), size(*facts.freeBytes)));
    else if (needed > 0)
        m_space->setText(
            format(m_context.text(L10nKey::exportSpaceLine), size(needed), size(*facts.freeBytes)));
    else
        m_space->setText(format(m_context.text(L10nKey::exportFreeLine), size(*facts.freeBytes)));
}

void DestinationRow::choose() {
    const QString filter =
        QStringLiteral("%1 (*.%2)").arg(m_context.text(L10nKey::stepVideo), fileExtension(m_format));
    const auto chosen = m_context.dialogs.chooseFileToSave(
        this, m_context.text(L10nKey::exportChooseDestination), m_path, {filter});
    if (!chosen)
        return;
    m_isProposed = false;
    setPath(withExtension(*chosen, m_format));
    // The dialog has asked before it returned a file that exists.
    m_isReplacingAgreed = m_path == *chosen && QFileInfo::exists(m_path);
}

bool DestinationRow::prepare(const QString& endingOfCaptions) {
    if (m_isProposed) {
        setPath(newDefaultOutputPath(m_format));
        return true;
    }
    QStringList replaced;
    if (!m_isReplacingAgreed && QFileInfo::exists(m_path))
        replaced << QFileInfo(m_path).fileName();
    const QFileInfo captions(pathBeside(m_path, endingOfCaptions));
    if (!endingOfCaptions.isEmpty() && captions.exists())
        replaced << captions.fileName();
    if (replaced.isEmpty())
        return true;
    return m_context.dialogs.confirm(
        this, m_context.text(L10nKey::exportReplaceTitle),
        format(m_context.text(L10nKey::exportReplaceMessage), replaced.join(QStringLiteral(", "))),
        m_context.text(L10nKey::replaceConfirm), m_context.text(L10nKey::cancel));
}

}
