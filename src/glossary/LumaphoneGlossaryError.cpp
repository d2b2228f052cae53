#include "glossary/LumaphoneGlossaryError.h"

namespace lumaphone {

namespace {

QString description(LumaphoneGlossaryError::Case errorCase)
{
    switch (errorCase) {
    case LumaphoneGlossaryError::unsupportedFormat:
        return QStringLiteral("Glossary 只支援 JSON、YAML 或 CSV。");
    }
    Q_UNREACHABLE();
}

} // namespace

LumaphoneGlossaryError::LumaphoneGlossaryError(Case errorCase)
    : LocalizedError(description(errorCase))
    , m_case(errorCase)
{
}

} // namespace lumaphone
