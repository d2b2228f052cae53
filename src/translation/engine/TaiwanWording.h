#pragma once

#include <QString>

#include <memory>

namespace lumaphone::engine {

/// What a leg writes, and so what its text still needs to read as Taiwan's Traditional Chinese.
enum class WrittenChinese {
    None, ///< the leg writes another language, or needs no help
    Traditional, ///< words and character variants only: characters that differ in meaning, such as 里 and 裡,
                 ///< stay
    Simplified, ///< the full conversion
};

/// Rewrites Chinese text in Taiwan's words and characters with OpenCC's dictionaries.
class TaiwanWording
{
public:
    /// Throws EngineError (Unavailable) where the system lacks the dictionaries.
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

} // namespace lumaphone::engine
