#include "ui/wizard/RecordingList.h"

#include "l10n/Format.h"
#include "ui/style/Controls.h"
#include "ui/style/Tokens.h"

#include <algorithm>
#include <QFileInfo>
#include <QGridLayout>
#include <QToolButton>

namespace pointloom {

RecordingList::RecordingList(const UiContext& context, QWidget* parent)
    : QScrollArea(parent)
    , m_context(context) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    setVisible(false);
    m_bindings.watchAll([this] { read(); }, m_context.state.videoURL, m_context.state.language);
}

void RecordingList::read() {
    m_reading.cancel();
    const auto recording = m_context.state.recording();
    setVisible(recording && recording->isSplit());
    if (isHidden())
        return;
    m_reading.start([recording = *recording] { return describeFiles(recording); },
                    [this](const std::vector<RecordedFile>& files) { show(files); });
}

void RecordingList::show(const std::vector<RecordedFile>& files) {
    auto* rows = new QWidget;
    auto* grid = Controls::layout<QGridLayout>(rows, {}, Space::s);
    grid->setVerticalSpacing(0);
    grid->setColumnStretch(1, 1);
    std::vector<QString> all;
    for (const RecordedFile& file : files)
        all.push_back(file.path);
    for (int row = 0; const RecordedFile& file : files) {
        const QString name = QFileInfo(file.path).fileName();
        QLabel* title = Controls::label(Controls::TextRole::body, rows);
        title->setTextFormat(Qt::PlainText);
        title->setText(name);
        title->setToolTip(plainToolTip({file.path}));
        auto* facts = new ElidedLabel(rows);
        Controls::setRole(facts, Controls::TextRole::quiet);
        facts->setTextFormat(Qt::PlainText);
        facts->setFullText(factsText(m_context, file, files.front()));
        QToolButton* leaveOut = Controls::iconButton(QStringLiteral("close"), rows);
        Controls::setName(leaveOut, format(m_context.text(L10nKey::recordingLeaveOut), name));
        std::vector<QString> others = all;
        std::erase(others, file.path);
        connect(leaveOut, &QToolButton::clicked, this, [this, others] {
            Q_EMIT chosen({others.front(), others});
        });
        grid->addWidget(title, row, 0);
        grid->addWidget(facts, row, 1);
        grid->addWidget(leaveOut, row, 2);
        ++row;
    }
    setWidget(rows); // deletes the rows before
    rows->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    updateGeometry();
}

QSize RecordingList::sizeHint() const {
    constexpr int mostShown = 4; // files; more are scrolled to
    if (!widget())
        return {0, 0};
    const QSize all = widget()->sizeHint();
    const auto* grid = static_cast<const QGridLayout*>(widget()->layout());
    const int row = all.height() / std::max(grid->rowCount(), 1);
    return {all.width(), std::min(all.height(), row * mostShown + row / 2)};
}

QSize RecordingList::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

}
