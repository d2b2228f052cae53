#pragma once

namespace lumaphone {

/// What a network writes, and so what its text still needs to read as Taiwan's Traditional Chinese.
enum class WrittenChinese {
    none, ///< the network writes another language, or needs no help
    traditional, ///< words and character variants only: characters that differ in meaning, such as 里 and 裡,
                 ///< stay
    simplified, ///< the full conversion
};

} // namespace lumaphone
