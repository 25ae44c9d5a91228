// The field for the logo on the scoreboard: shows, chooses and removes it.
#pragma once

#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <optional>
#include <QFrame>
#include <QImage>
#include <QUrl>

class QLabel;
class QPushButton;

namespace pointloom {

class LogoField final : public QFrame {
    Q_OBJECT

public:
    LogoField(const UiContext& context, QWidget* parent);

    /// Shows a logo, which is read in the background.
    void setLogo(const std::optional<QUrl>& url);

    const std::optional<QUrl>& logo() const { return m_url; }

    /// Null while it is read and when there is none.
    const QImage& picture() const { return m_picture; }

Q_SIGNALS:
    void logoPicked(); // or removed, by the user
    void pictureChanged();

private:
    void choose();
    void read(const QUrl& url, bool isNew);
    void take(const QUrl& url, const QImage& picture, bool isNew);
    void remove();
    void setPicture(const QImage& picture);
    void showTexts();

    UiContext m_context;
    std::optional<QUrl> m_url;
    QString m_unreadable; // name of the chosen file when it could not be read
    QImage m_picture;
    QLabel* m_preview;
    QLabel* m_title;
    QLabel* m_name;
    QLabel* m_hint;
    QPushButton* m_choose;
    QPushButton* m_remove;
    BackgroundTask<QImage> m_reading;
    Bindings m_bindings;
};

}
