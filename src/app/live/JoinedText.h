#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QList>
#include <QString>

#include <vector>

namespace lumaphone {

/// One side of the lines as a text: a paragraph for each line, without white space around it, blank ones left
/// out. What changes at the end of a long session costs no more than in a short one.
class JoinedText
{
public:
    /// `side`: the source text or the translation of a line.
    explicit JoinedText(QString LumaphoneCaptionLine::*side);

    const QString &text() const { return m_text; }
    /// The lines from `first` on have changed, come or gone. Whether the text has changed.
    bool follow(const QList<LumaphoneCaptionLine> &lines, qsizetype first);

private:
    QString LumaphoneCaptionLine::*m_side;
    QString m_text;
    std::vector<qsizetype> m_ends; ///< of the text up to each line
};

} // namespace lumaphone
