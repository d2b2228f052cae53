#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The values of one term while they are typed: a new one's, or those of a term of the list.
class GlossaryTermEditor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The sheet's model has the editors.")
    Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QString target READ target WRITE setTarget NOTIFY targetChanged)
    /// Raw value.
    Q_PROPERTY(QString mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(QString note READ note WRITE setNote NOTIFY noteChanged)
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY isEnabledChanged)
    Q_PROPERTY(bool caseSensitive READ caseSensitive WRITE setCaseSensitive NOTIFY caseSensitiveChanged)
    /// Whether these are the values of a term that would be used.
    Q_PROPERTY(bool isUsable READ isUsable NOTIFY isUsableChanged)

public:
    explicit GlossaryTermEditor(QObject *parent = nullptr);

    const LumaphoneGlossaryTerm &term() const { return m_term; }
    void setTerm(const LumaphoneGlossaryTerm &term);

    const QString &source() const { return m_term.source; }
    void setSource(const QString &source);
    const QString &target() const { return m_term.target; }
    void setTarget(const QString &target);
    QString mode() const { return rawValue(m_term.mode); }
    void setMode(const QString &rawValue);
    const QString &note() const { return m_term.note; }
    void setNote(const QString &note);
    bool isEnabled() const { return m_term.isEnabled; }
    void setEnabled(bool isEnabled);
    bool caseSensitive() const { return m_term.caseSensitive; }
    void setCaseSensitive(bool isSensitive);
    bool isUsable() const;

signals:
    void sourceChanged();
    void targetChanged();
    void modeChanged();
    void noteChanged();
    void isEnabledChanged();
    void caseSensitiveChanged();
    void isUsableChanged();

private:
    template<typename Value>
    void set(Value &member, const Value &value, void (GlossaryTermEditor::*changed)());

    LumaphoneGlossaryTerm m_term;
};

} // namespace lumaphone
