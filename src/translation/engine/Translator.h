#pragma once

#include "language/TaiwanWording.h"
#include "translation/engine/TranslationModel.h"

#include <QString>

#include <memory>
#include <stop_token>
#include <vector>

namespace lumaphone::engine {

/// From one language to another over one leg or, through a language between, over two. Legs may be shared
/// among translators. May be called from any thread.
class Translator
{
public:
    /// `legs` in the order of travel, at least one; `written` is what the last one writes. Throws
    /// PlatformError where the system lacks the dictionaries of Taiwan's words.
    Translator(std::vector<std::shared_ptr<TranslationModel>> legs, WrittenChinese written);

    /// Throws EngineError (cancelled).
    QString translate(const QString &text, const std::stop_token &stop = {});

    /// See TranslationModel::warmUp.
    void warmUp();

private:
    std::vector<std::shared_ptr<TranslationModel>> m_legs;
    TaiwanWording m_wording;
};

} // namespace lumaphone::engine
