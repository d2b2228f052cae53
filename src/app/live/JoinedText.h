#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace lumaphone {

/// One side of the lines as a text: a paragraph for each line, without white space around it, blank ones left
/// out. What changes at the end of a long session costs no more than in a short one. A view hears whether
/// there is any text, and can have it copied: as a string, all of it would pass through the script engine
/// with every word that is recognised.
class JoinedText final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The live session's model has two.")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)

public:
    /// `side`: the source text or the translation of a line.
    explicit JoinedText(QString LumaphoneCaptionLine::*side, QObject *parent = nullptr);

    const QString &text() const { return m_text; }
    bool isEmpty() const { return m_text.isEmpty(); }
    /// The lines from `first` on have changed, come or gone.
    void follow(const QList<LumaphoneCaptionLine> &lines, qsizetype first);
    /// To the clipboard.
    Q_INVOKABLE void copy() const;

signals:
    void isEmptyChanged();

private:
    QString LumaphoneCaptionLine::*m_side;
    QString m_text;
    std::vector<qsizetype> m_ends; ///< of the text up to each line
};

} // namespace lumaphone
