#include "app/keys/KeySequences.h"

#include <QKeySequence>

#include <algorithm>

namespace lumaphone {

namespace {

struct KeyLabel
{
    QStringView key;
    QStringView label;
};

/// The keys whose names in the code are not those that people read.
constexpr KeyLabel keyLabels[] {
    {u"Return", u"Enter"},
    {u"Space", u"空白鍵"},
    {u"PgUp", u"Page Up"},
    {u"PgDown", u"Page Down"},
    {u"Up", u"↑"},
    {u"Down", u"↓"},
    {u"Menu", u"選單鍵"},
};

QString labelOf(const QString &sequence)
{
    const qsizetype start = sequence.lastIndexOf(u'+') + 1;
    const QStringView key = QStringView(sequence).mid(start);
    const auto *const known = std::find_if(std::begin(keyLabels), std::end(keyLabels),
        [key](const KeyLabel &label) { return label.key == key; });
    return known == std::end(keyLabels) ? sequence : sequence.left(start).append(known->label);
}

} // namespace

bool KeySequences::contains(const QStringList &sequences, int key, int modifiers)
{
    // The keys of the number pad are the same keys.
    const auto held = Qt::KeyboardModifiers(modifiers) & ~Qt::KeypadModifier;
    const QKeySequence pressed(QKeyCombination(held, Qt::Key(key)));
    return std::any_of(sequences.begin(), sequences.end(),
        [&pressed](const QString &sequence) { return QKeySequence::fromString(sequence) == pressed; });
}

QStringList KeySequences::labels(const QStringList &sequences)
{
    QStringList labels;
    for (const QString &sequence : sequences) {
        if (const QString label = labelOf(sequence); !labels.contains(label)) {
            labels.append(label);
        }
    }
    return labels;
}

} // namespace lumaphone
