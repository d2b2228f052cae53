#include "app/glossary/GlossaryTermEditor.h"

#include "app/glossary/GlossaryTermTexts.h"

namespace lumaphone {

GlossaryTermEditor::GlossaryTermEditor(QObject *parent)
    : QObject(parent)
{
}

template<typename Value>
void GlossaryTermEditor::set(Value &member, const Value &value, void (GlossaryTermEditor::*changed)())
{
    if (member == value) {
        return;
    }
    const bool wasUsable = isUsable();
    member = value;
    emit(this->*changed)();
    if (wasUsable != isUsable()) {
        emit isUsableChanged();
    }
}

void GlossaryTermEditor::setTerm(const LumaphoneGlossaryTerm &term)
{
    m_term.id = term.id;
    setSource(term.source);
    setTarget(term.target);
    setMode(rawValue(term.mode));
    setNote(term.note);
    setEnabled(term.isEnabled);
    setCaseSensitive(term.caseSensitive);
}

void GlossaryTermEditor::setSource(const QString &source)
{
    set(m_term.source, source, &GlossaryTermEditor::sourceChanged);
}

void GlossaryTermEditor::setTarget(const QString &target)
{
    set(m_term.target, target, &GlossaryTermEditor::targetChanged);
}

void GlossaryTermEditor::setMode(const QString &rawValue)
{
    if (const auto mode = lumaphoneGlossaryTermMode(rawValue)) {
        set(m_term.mode, *mode, &GlossaryTermEditor::modeChanged);
    }
}

void GlossaryTermEditor::setNote(const QString &note)
{
    set(m_term.note, note, &GlossaryTermEditor::noteChanged);
}

void GlossaryTermEditor::setEnabled(bool isEnabled)
{
    set(m_term.isEnabled, isEnabled, &GlossaryTermEditor::isEnabledChanged);
}

void GlossaryTermEditor::setCaseSensitive(bool isSensitive)
{
    set(m_term.caseSensitive, isSensitive, &GlossaryTermEditor::caseSensitiveChanged);
}

bool GlossaryTermEditor::isUsable() const
{
    return isUsableTerm(m_term.source, m_term.target, m_term.mode);
}

} // namespace lumaphone
