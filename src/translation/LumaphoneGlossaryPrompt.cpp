#include "translation/LumaphoneGlossaryPrompt.h"

#include <QStringList>

namespace lumaphone {

QString LumaphoneGlossaryPrompt::signature() const
{
    QStringList pieces;
    for (const LumaphoneGlossaryTerm &term : terms) {
        pieces.append(term.source + QLatin1Char('=') + term.target + QLatin1Char(':') + rawValue(term.mode));
    }
    return pieces.join(QLatin1Char('|'));
}

QString LumaphoneGlossaryPrompt::promptText() const
{
    if (terms.isEmpty()) {
        return QString();
    }
    QStringList entries;
    for (const LumaphoneGlossaryTerm &term : terms) {
        entries.append(QLatin1String("- source: ") + term.source + QLatin1String("\n  target: ") + term.target
            + QLatin1String("\n  mode: ") + rawValue(term.mode));
    }
    return QStringLiteral("\n必需術語：\n翻譯時必須使用以下術語。若 mode 是 preserve，請保留 source 原詞；"
                          "若 mode 是 translate，請固定使用 target。\n\n")
        + entries.join(QLatin1Char('\n'));
}

} // namespace lumaphone
