#include "language/TaiwanTraditional.h"

#include <opencc/opencc.h>

namespace lumaphone {

class TaiwanTraditional::Converter
{
public:
    opencc::SimpleConverter dictionaries {"s2twp.json"};
};

TaiwanTraditional::TaiwanTraditional()
{
    try {
        m_converter = std::make_unique<Converter>();
    } catch (const std::exception &error) {
        throw PlatformError(QStringLiteral("無法載入繁體中文轉換字典（套件 libopencc-data）：%1")
                                .arg(QString::fromUtf8(error.what())));
    }
}

TaiwanTraditional::~TaiwanTraditional() = default;

QString TaiwanTraditional::convert(const QString &text) const
{
    return QString::fromStdString(m_converter->dictionaries.Convert(text.toStdString()));
}

} // namespace lumaphone
