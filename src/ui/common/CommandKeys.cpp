#include "ui/common/CommandKeys.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"

#include <algorithm>
#include <QKeyEvent>
#include <QRegularExpression>

namespace pointloom {

namespace {

template <std::size_t count>
void append(CommandKeys::Keys& keys, const std::array<QKeyCombination, count>& more) {
    std::ranges::copy_if(more, std::back_inserter(keys),
                         [](QKeyCombination key) { return key.key() != Qt::Key_unknown; });
}

// The digits 1 and 2 by their place on the keyboard: with Shift, and on some keyboards without, their keys
// write other characters.
Qt::Key keyOf(const QKeyEvent& event) {
    constexpr quint32 scanCodeOf1 = 10;
    constexpr quint32 scanCodeOf2 = 11;
    if (event.nativeScanCode() == scanCodeOf1 || event.key() == Qt::Key_Exclam)
        return Qt::Key_1;
    if (event.nativeScanCode() == scanCodeOf2 || event.key() == Qt::Key_At || event.key() == Qt::Key_QuoteDbl)
        return Qt::Key_2;
    return Qt::Key(event.key());
}

bool isBetween(Qt::Key key, Qt::Key first, Qt::Key last) {
    return key >= first && key <= last;
}

bool isModifierOrAccent(Qt::Key key) {
    return key == 0 || key == Qt::Key_unknown || isBetween(key, Qt::Key_Shift, Qt::Key_ScrollLock) ||
           isBetween(key, Qt::Key_Super_L, Qt::Key_Hyper_R) ||
           isBetween(key, Qt::Key_AltGr, Qt::Key_Multi_key) ||
           isBetween(key, Qt::Key_Dead_Grave, Qt::Key_Dead_Longsolidusoverlay);
}

bool isReserved(QKeyCombination key) {
    constexpr Qt::Key ofDialogs[] = {Qt::Key_Escape, Qt::Key_Return,  Qt::Key_Enter,
                                     Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Menu};
    constexpr QKeyCombination ofClipboardAndMenus[] = {Qt::CTRL | Qt::Key_A,       Qt::CTRL | Qt::Key_C,
                                                       Qt::CTRL | Qt::Key_V,       Qt::CTRL | Qt::Key_X,
                                                       Qt::CTRL | Qt::Key_Insert,  Qt::SHIFT | Qt::Key_Insert,
                                                       Qt::SHIFT | Qt::Key_Delete, Qt::SHIFT | Qt::Key_F10};
    const bool opensMenu =
        key.keyboardModifiers() == Qt::AltModifier && isBetween(key.key(), Qt::Key_A, Qt::Key_Z);
    return opensMenu || isModifierOrAccent(key.key()) ||
           std::ranges::find(ofDialogs, key.key()) != std::end(ofDialogs) ||
           std::ranges::find(ofClipboardAndMenus, key) != std::end(ofClipboardAndMenus);
}

QString keyName(Qt::Key key, Language language) {
    switch (key) {
    case Qt::Key_Left:
        return QStringLiteral("←");
    case Qt::Key_Right:
        return QStringLiteral("→");
    case Qt::Key_Up:
        return QStringLiteral("↑");
    case Qt::Key_Down:
        return QStringLiteral("↓");
    case Qt::Key_Space:
        return t(language, L10nKey::keysSpace);
    case Qt::Key_Home:
        return t(language, L10nKey::keysHome);
    case Qt::Key_End:
        return t(language, L10nKey::keysEnd);
    case Qt::Key_Delete:
        return t(language, L10nKey::keysDelete);
    default:
        return QKeySequence(key).toString(QKeySequence::NativeText); // in the language of Qt's own texts
    }
}

QString labelOr(const CommandKeys::Keys& keys, Command command, Language language, const QString& separator) {
    QStringList labels;
    for (const QKeyCombination key : keys)
        labels << keyLabel(key, language);
    return labels.isEmpty() ? localeOf(language).quoteString(commandName(command, language))
                            : labels.join(separator);
}

}

CommandKeys::Keys usualKeys(Command command) {
    CommandKeys::Keys keys;
    append(keys, commandRow(command).keys);
    return keys;
}

CommandKeys::Keys CommandKeys::shown(Command command) const {
    const Chosen& chosen = m_chosen.value();
    if (const auto found = chosen.find(command); found != chosen.end())
        return found->second;
    Keys keys = usualKeys(command);
    keys.removeIf([&](QKeyCombination key) { return isChosenForOther(command, key); });
    return keys;
}

CommandKeys::Keys CommandKeys::of(Command command) const {
    Keys keys = shown(command);
    if (m_chosen.value().contains(command))
        return keys;
    append(keys, commandRow(command).hiddenKeys);
    keys.removeIf([&](QKeyCombination key) { return isChosenForOther(command, key); });
    return keys;
}

bool CommandKeys::isChosenForOther(Command command, QKeyCombination key) const {
    return std::ranges::any_of(m_chosen.value(), [&](const auto& choice) {
        return choice.first != command && choice.second.contains(key);
    });
}

const CommandRow* CommandKeys::commandOf(QKeyCombination key) const {
    const auto rows = commandTable();
    const auto found =
        std::ranges::find_if(rows, [&](const CommandRow& row) { return of(row.id).contains(key); });
    return found == rows.end() ? nullptr : &*found;
}

bool CommandKeys::areUsual(Command command) const {
    return shown(command) == usualKeys(command);
}

CommandKeys::Chosen CommandKeys::chosenWith(Command command, const Keys& keys) const {
    Chosen chosen = m_chosen.value();
    chosen.erase(command);
    for (auto choice = chosen.begin(); choice != chosen.end();) {
        const auto isTaken = [&](QKeyCombination key) { return keys.contains(key); };
        const bool losesAll = choice->second.removeIf(isTaken) > 0 && choice->second.isEmpty();
        choice = losesAll ? chosen.erase(choice) : std::next(choice);
    }
    if (keys != usualKeys(command))
        chosen[command] = keys;
    return chosen;
}

std::optional<QKeyCombination> pressedKey(const QKeyEvent& event) {
    if (isModifierOrAccent(Qt::Key(event.key())))
        return std::nullopt;
    return QKeyCombination(event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier), keyOf(event));
}

std::optional<KeyFault> faultOf(QKeyCombination key, CommandGroup group) {
    if (isReserved(key))
        return KeyFault::reserved;
    const bool hasControl =
        (key.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    if (group == CommandGroup::menu && !hasControl && !isBetween(key.key(), Qt::Key_F1, Qt::Key_F35))
        return KeyFault::needControl;
    return std::nullopt;
}

QString keyLabel(QKeyCombination key, Language language) {
    const Qt::KeyboardModifiers modifiers = key.keyboardModifiers();
    QString label;
    if (modifiers.testFlag(Qt::MetaModifier))
        label += QStringLiteral("Meta+");
    if (modifiers.testFlag(Qt::ControlModifier))
        label += u'⌘';
    if (modifiers.testFlag(Qt::AltModifier))
        label += QStringLiteral("Alt+");
    if (modifiers.testFlag(Qt::ShiftModifier))
        label += u'⇧';
    return forThisDesktop(label, language) + keyName(key.key(), language);
}

QString commandName(Command command, Language language) {
    const CommandRow& row = commandRow(command);
    const QString title = t(language, *row.title).remove(u'…');
    return row.does == L10nKey::helpPages ? format(t(language, L10nKey::keysGoToPage), title) : title;
}

QString keyOrName(Command command, const CommandKeys& keys, Language language) {
    return labelOr(keys.shown(command).mid(0, 1), command, language, {});
}

QString withKeysInUse(QString text, const CommandKeys& keys, Language language) {
    static const QRegularExpression markerKeys(QStringLiteral("\\bM( \\w+ )\\+"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    if (const auto match = markerKeys.match(text); match.hasMatch())
        text.replace(
            match.capturedStart(), match.capturedLength(),
            labelOr(keys.shown(Command::addMarker), Command::addMarker, language, match.captured(1)));
    const auto label = [&](Command command) { return keyOrName(command, keys, language); };
    text.replace(QStringLiteral("← →"), label(Command::frameBack) + u' ' + label(Command::frameForward));
    text.replace(t(language, L10nKey::keysSpace) + QStringLiteral(" —"),
                 label(Command::playPause) + QStringLiteral(" —"));
    return text.replace(keyLabel(usualKeys(Command::exportVideo).first(), language),
                        label(Command::exportVideo));
}

std::vector<KeyListLine> keyList(CommandGroup group, const CommandKeys& keys, Language language) {
    std::vector<KeyListLine> lines;
    for (const CommandRow& row : commandTable()) {
        QStringList labels;
        if (row.fixedKeys)
            labels << forThisDesktop(t(language, *row.fixedKeys), language);
        for (const QKeyCombination key : keys.shown(row.id))
            labels << keyLabel(key, language);
        if (row.group != group || labels.isEmpty())
            continue;
        const L10nKey does = row.does ? *row.does : *row.title;
        if (!lines.empty() && lines.back().does == does)
            lines.back().keys += labels;
        else
            lines.push_back({labels, does});
    }
    return lines;
}

}
