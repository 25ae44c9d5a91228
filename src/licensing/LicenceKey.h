// What a buyer types in: "PL-" and twenty characters, the last of which guards against slips.
#pragma once

#include <QString>

namespace pointloom {

class LicenceKey {
public:
    /// Reads a key as people write it: blanks and hyphens anywhere, small letters, O for 0, I or L for 1.
    /// Throws LicenceError (malformedKey) that says what is wrong.
    static LicenceKey parse(const QString& text);

    /// Whether `text` is as long as a key, or longer: what is wrong with it then is a slip, not a missing
    /// end.
    static bool isWhole(const QString& text);

    /// A fresh random key of 95 bits.
    static LicenceKey generate();

    /// "PL-XXXXX-XXXXX-XXXXX-XXXXX", the form that is sent and signed.
    const QString& text() const { return m_text; }

    /// The last group alone, for screens and console: "PL-…-XXXXX".
    QString masked() const;

    bool operator==(const LicenceKey&) const = default;

private:
    explicit LicenceKey(const QString& symbols);

    QString m_text;
};

}
