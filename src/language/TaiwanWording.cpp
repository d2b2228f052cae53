#include "language/TaiwanWording.h"

#include "base/LocalizedError.h"

#include <opencc/Config.hpp>
#include <opencc/Converter.hpp>
#include <opencc/Exception.hpp>

#include <string>

namespace lumaphone {

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

opencc::ConverterPtr loadChain(bool isTraditional, const std::string &dictionaries)
{
    opencc::Config config;
    return isTraditional ? config.NewFromString(traditionalSteps, dictionaries)
                         : config.NewFromFile(dictionaries + "/s2twp.json");
}

} // namespace

struct TaiwanWording::Converter
{
    opencc::ConverterPtr chain;
};

TaiwanWording::TaiwanWording(WrittenChinese written)
    : TaiwanWording(written, QStringLiteral(LUMAPHONE_OPENCC_DICTIONARIES))
{
}

TaiwanWording::TaiwanWording(WrittenChinese written, const QString &dictionaries)
{
    if (written == WrittenChinese::none) {
        return;
    }
    const bool isTraditional = written == WrittenChinese::traditional;
    const auto fail = [isTraditional](const char *reason) {
        throw PlatformError(QStringLiteral("無法載入中文用詞轉換字典「%1」（套件 libopencc-data）：%2")
                                .arg(isTraditional ? QStringLiteral("TWPhrases") : QStringLiteral("s2twp"),
                                    QString::fromUtf8(reason)));
    };
    try {
        m_converter = std::make_shared<const Converter>(
            Converter {loadChain(isTraditional, dictionaries.toStdString())});
    } catch (const opencc::Exception &error) {
        // Its errors are no standard ones; those of the dictionaries' format are.
        fail(error.what());
    } catch (const std::exception &error) {
        fail(error.what());
    }
}

TaiwanWording::TaiwanWording(TaiwanWording &&) noexcept = default;
TaiwanWording &TaiwanWording::operator=(TaiwanWording &&) noexcept = default;
TaiwanWording::~TaiwanWording() = default;

QString TaiwanWording::rewrite(const QString &text) const
{
    return m_converter ? QString::fromStdString(m_converter->chain->Convert(text.toStdString())) : text;
}

} // namespace lumaphone
