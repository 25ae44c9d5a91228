#include "ui/wizard/FlagField.h"

#include "model/MatchConfig.h"
#include "ui/style/Tokens.h"

#include <QLabel>
#include <QValidator>

namespace pointloom {

namespace {

constexpr qsizetype codeLength = 2;
constexpr int flagRoom = 34; // points, at the end of the field

// Corrects instead of refusing: whatever is typed or pasted leaves its first letters, in capitals.
class CountryCode final : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& cursor) const override {
        QString letters;
        for (const QChar character : std::as_const(text)) {
            const QChar upper = character.toUpper();
            if (upper >= u'A' && upper <= u'Z' && letters.size() < codeLength)
                letters += upper;
        }
        text = letters;
        cursor = std::min(cursor, static_cast<int>(text.size()));
        return Acceptable;
    }
};

QString flagOf(const QString& code) {
    return TeamConfig{{}, {}, code, {}}.flagDisplayName(MatchFormat::singles).trimmed();
}

}

FlagField::FlagField(QWidget* parent)
    : QLineEdit(parent)
    , m_flag(new QLabel(this)) {
    constexpr int fieldWidth = 92;
    setValidator(new CountryCode(this));
    setTextMargins(0, 0, flagRoom - Space::s, 0);
    setFixedWidth(fieldWidth);
    QFont flagFont = font();
    flagFont.setPointSizeF(flagFont.pointSizeF() * TypeScale::section);
    m_flag->setFont(flagFont);
    m_flag->setAlignment(Qt::AlignCenter);
    m_flag->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QLineEdit::textChanged, m_flag,
            [this](const QString& code) { m_flag->setText(flagOf(code)); });
}

void FlagField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    m_flag->setGeometry(width() - flagRoom, 0, flagRoom, height());
}

}
