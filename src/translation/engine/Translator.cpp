#include "translation/engine/Translator.h"

#include <utility>

namespace lumaphone::engine {

Translator::Translator(std::vector<std::shared_ptr<TranslationModel>> legs, WrittenChinese written)
    : m_legs(std::move(legs))
    , m_wording(written)
{
    Q_ASSERT(!m_legs.empty());
}

QString Translator::translate(const QString &text, const std::stop_token &stop)
{
    QString translated = text;
    for (const auto &leg : m_legs)
        translated = leg->translate(translated, stop);
    return m_wording.rewrite(translated);
}

void Translator::warmUp()
{
    for (const auto &leg : m_legs)
        leg->warmUp();
}

} // namespace lumaphone::engine
