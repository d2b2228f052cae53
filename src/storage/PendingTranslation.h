#pragma once

#include <QStringView>

namespace lumaphone {

/// Shown in the place of a translation that has not arrived.
inline constexpr QStringView pendingTranslationPlaceholder = u"翻譯中...";

} // namespace lumaphone
