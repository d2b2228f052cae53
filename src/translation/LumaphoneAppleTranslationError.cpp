#include "translation/LumaphoneAppleTranslationError.h"

namespace lumaphone {

namespace {

QString descriptionOf(
    LumaphoneAppleTranslationError::Case errorCase, const QString &source, const QString &target)
{
    switch (errorCase) {
    case LumaphoneAppleTranslationError::Case::unsupportedPair:
        return QStringLiteral("Apple Translation 不支援 ") + source + QStringLiteral(" 到 ") + target
            + QStringLiteral(" 的翻譯。");
    }
    Q_UNREACHABLE();
}

} // namespace

LumaphoneAppleTranslationError LumaphoneAppleTranslationError::unsupportedPair(
    const QString &source, const QString &target)
{
    return {Case::unsupportedPair, source, target};
}

LumaphoneAppleTranslationError::LumaphoneAppleTranslationError(
    Case errorCase, const QString &source, const QString &target)
    : LocalizedError(descriptionOf(errorCase, source, target))
    , m_case(errorCase)
    , m_source(source)
    , m_target(target)
{
}

} // namespace lumaphone
