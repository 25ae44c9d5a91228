#include "licensing/LicenceKey.h"

#include <QRandomGenerator>

namespace pointloom {

namespace {

// Crockford's base 32: no I, L, O, U.
constexpr QStringView alphabet = u"0123456789ABCDEFGHJKMNPQRSTVWXYZ";
constexpr int base = 32;
constexpr qsizetype symbolCount = 20; // the check symbol included
constexpr qsizetype groupSize = 5;
constexpr qsizetype longestInput = 200; // characters looked at

[[noreturn]] void refuse(const QString& reason) {
    throw LicenceError(LicenceFault::malformedKey, reason);
}

// The symbols without prefix, spaces and hyphens, look-alikes resolved.
QString symbolsOf(const QString& text) {
    QString symbols;
    for (QChar character : text.trimmed().toUpper()) {
        if (character.isSpace() || character.category() == QChar::Punctuation_Dash)
            continue;
        symbols += character;
    }
    // Without its prefix a key may begin with P and 1, written as a small L.
    if (symbols.size() != symbolCount && symbols.startsWith(u"PL"))
        symbols.remove(0, 2);
    return symbols.replace(u'O', u'0').replace(u'I', u'1').replace(u'L', u'1');
}

// Luhn's algorithm in base 32: finds every wrong symbol and nearly every swap of neighbours.
int checkValue(QStringView symbols) {
    int sum = 0;
    int factor = 2;
    for (auto symbol = symbols.crbegin(); symbol != symbols.crend(); ++symbol) {
        const int addend = factor * static_cast<int>(alphabet.indexOf(*symbol));
        sum += addend / base + addend % base;
        factor = 3 - factor;
    }
    return (base - sum % base) % base;
}

}

LicenceKey LicenceKey::parse(const QString& text) {
    const QString symbols = symbolsOf(text.left(longestInput));
    if (symbols.isEmpty())
        refuse(QStringLiteral("Enter the licence key from your receipt."));
    for (const QChar symbol : symbols) {
        if (!alphabet.contains(symbol))
            refuse(QStringLiteral("A licence key has no “%1” in it.")
                       .arg(symbol.isPrint() ? symbol : QChar(u'?')));
    }
    if (symbols.size() != symbolCount)
        refuse(QStringLiteral("A licence key has %1 letters and digits after “PL”, and this one has %2.")
                   .arg(symbolCount)
                   .arg(symbols.size()));
    if (alphabet.indexOf(symbols.back()) != checkValue(QStringView(symbols).chopped(1)))
        refuse(QStringLiteral("There is a slip in this licence key. Compare it with your receipt."));
    return LicenceKey(symbols);
}

bool LicenceKey::isValid(const QString& text) {
    try {
        parse(text);
        return true;
    } catch (const LicenceError&) {
        return false;
    }
}

bool LicenceKey::isWhole(const QString& text) {
    return symbolsOf(text.left(longestInput)).size() >= symbolCount;
}

LicenceKey LicenceKey::generate() {
    QString symbols;
    for (qsizetype i = 1; i < symbolCount; ++i)
        symbols += alphabet[QRandomGenerator::system()->bounded(base)];
    symbols += alphabet[checkValue(symbols)];
    return LicenceKey(symbols);
}

QString LicenceKey::masked() const {
    return QStringLiteral("PL-…-") + m_text.right(groupSize);
}

LicenceKey::LicenceKey(const QString& symbols)
    : m_text(QStringLiteral("PL")) {
    for (qsizetype at = 0; at < symbols.size(); at += groupSize)
        m_text += u'-' + symbols.mid(at, groupSize);
}

}
