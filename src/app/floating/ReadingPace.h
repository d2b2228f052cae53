#pragma once

#include <QString>

#include <chrono>

namespace lumaphone::readingpace {

/// How long a caption has to stand to be read.
///
/// Nine wide characters a second, and eighteen narrow ones: guides for subtitles allow adults about nine of
/// Chinese and seventeen to twenty letters of English. Never less than a second, in which an eye finds the
/// line, and never more than seven, in which it would be read twice.
std::chrono::milliseconds readingTime(const QString &text);

inline constexpr double wideCharactersPerSecond = 9;
inline constexpr std::chrono::milliseconds shortest = std::chrono::seconds(1);
inline constexpr std::chrono::milliseconds longest = std::chrono::seconds(7);
/// No line waits longer for its place, however much is said: later than that, nobody follows any more.
inline constexpr std::chrono::milliseconds mostLag = std::chrono::seconds(4);

} // namespace lumaphone::readingpace
