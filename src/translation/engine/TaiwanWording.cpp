#include "translation/engine/TaiwanWording.h"

#include "translation/engine/EngineError.h"

#include <opencc/Config.hpp>
#include <opencc/Converter.hpp>

#include <string>

namespace lumaphone::engine {
namespace {

// Words are looked up before characters, each in the text that the step before has left.
constexpr auto traditionalSteps = R"({
    "name": "Traditional Chinese with Taiwan's words",
    "segmentation": { "type": "mmseg", "dict": { "type": "ocd2", "file": "TWPhrases.ocd2" } },
    "conversion_chain": [
        { "dict": { "type": "ocd2", "file": "TWPhrases.ocd2" } },
        { "dict": { "type": "ocd2", "file": "TWVariants.ocd2" } }
    ]
})";

} // namespace

struct TaiwanWording::Converter
{
    opencc::ConverterPtr chain;
};

TaiwanWording::TaiwanWording(WrittenChinese written)
{
    if (written == WrittenChinese::None)
        return;
    const bool isTraditional = written == WrittenChinese::Traditional;
    try {
        opencc::Config config;
        const opencc::ConverterPtr chain
            = isTraditional ? config.NewFromString(traditionalSteps, "") : config.NewFromFile("s2twp.json");
        m_converter = std::make_shared<const Converter>(Converter {chain});
    } catch (const std::exception &error) {
        throw EngineError(EngineError::Case::Unavailable,
            isTraditional ? QStringLiteral("TWPhrases") : QStringLiteral("s2twp"),
            QString::fromUtf8(error.what()));
    }
}

TaiwanWording::TaiwanWording(TaiwanWording &&) noexcept = default;
TaiwanWording &TaiwanWording::operator=(TaiwanWording &&) noexcept = default;
TaiwanWording::~TaiwanWording() = default;

QString TaiwanWording::rewrite(const QString &text) const
{
    return m_converter ? QString::fromStdString(m_converter->chain->Convert(text.toStdString())) : text;
}

} // namespace lumaphone::engine
