#include "app/glossary/GlossaryTermTexts.h"

#include "base/Text.h"

namespace lumaphone {

QString title(LumaphoneGlossaryTermMode mode)
{
    switch (mode) {
    case LumaphoneGlossaryTermMode::preserve:
        return QStringLiteral("保留原文");
    case LumaphoneGlossaryTermMode::translate:
        return QStringLiteral("固定譯法");
    }
    Q_UNREACHABLE();
}

QString termDetail(const LumaphoneGlossaryTerm &term)
{
    return title(term.mode) + (term.caseSensitive ? QStringLiteral(" · 大小寫敏感") : QString());
}

bool isUsableTerm(const QString &source, const QString &target, LumaphoneGlossaryTermMode mode)
{
    const bool needsTarget = mode == LumaphoneGlossaryTermMode::translate;
    return !text::trimmed(source).isEmpty() && !(needsTarget && text::trimmed(target).isEmpty());
}

} // namespace lumaphone
