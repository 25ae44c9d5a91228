// The path of the new video, and whether the disk has space for it.
#pragma once

#include "export/ExportJob.h"
#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace pointloom {

/// The disk facts of an export.
struct ExportFacts {
    bool isFolderThere = false;            // that the output goes into
    std::optional<std::int64_t> freeBytes; // where that folder is or would be
};

class DestinationRow : public QFrame {
    Q_OBJECT

public:
    DestinationRow(const UiContext& context, QWidget* parent);

    const QString& path() const { return m_path; }
    /// A new file named after this moment.
    void proposeNewFile();

    /// Gives the file the format's ending.
    void setFormat(ExportFormat format);
    /// Measures the size of the export in the background and shows it then; none stops that.
    void estimate(const std::optional<ExportJob>& job);

    /// True when the file, and the one of its captions, may be written: they do not exist, or the user agrees
    /// that they are replaced. A proposed file is named after this moment, and its folder is made when it is
    /// missing.
    bool prepare(const QString& endingOfCaptions);

    /// A proposed file leaves one that has its name where it is.
    IfExists ifExists() const { return m_isProposed ? IfExists::addNumber : IfExists::replace; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void build();
    void bind();
    void showWords();
    void showPath();
    void showSpace();
    void choose();
    void setPath(const QString& path);
    void gather();

    UiContext m_context;
    QLabel* m_icon;
    QLabel* m_heading;
    QLabel* m_shownPath;
    QLabel* m_space;
    QPushButton* m_change;

    QString m_path;
    bool m_isProposed = true;         // the user did not choose another
    bool m_isReplacingAgreed = false; // the user chose a file that was there
    ExportFormat m_format = ExportFormat::h264;
    std::optional<ExportFacts> m_facts;   // absent until they are gathered
    std::optional<std::int64_t> m_needed; // bytes; absent until they are measured
    BackgroundTask<ExportFacts> m_gathering;
    BackgroundWorker m_estimating;
    Bindings m_bindings; // ends first
};

}
