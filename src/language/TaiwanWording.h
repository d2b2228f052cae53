#pragma once

#include "language/WrittenChinese.h"

#include <QString>

#include <memory>

namespace lumaphone {

/// Rewrites Chinese text in Taiwan's words and characters with OpenCC's dictionaries. Any thread.
class TaiwanWording
{
public:
    /// Reads the dictionaries. Throws PlatformError where the system lacks them.
    explicit TaiwanWording(WrittenChinese written);
    /// With the dictionaries of a folder.
    TaiwanWording(WrittenChinese written, const QString &dictionaries);
    TaiwanWording(TaiwanWording &&) noexcept;
    TaiwanWording &operator=(TaiwanWording &&) noexcept;
    ~TaiwanWording();

    QString rewrite(const QString &text) const;

private:
    struct Converter;
    std::shared_ptr<const Converter> m_converter; ///< null: nothing to rewrite
};

} // namespace lumaphone
