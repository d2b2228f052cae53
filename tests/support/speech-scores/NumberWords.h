#pragma once

#include <QString>

#include <optional>

namespace lumaphone::test {

/// How a written number is usually read aloud in English: "33" as "thirty three", "1811" as "eighteen
/// eleven", "29340" digit by digit, "29,340" as one number, "2.5" as "two point five", "21st" as "twenty
/// first". None for what is no number.
std::optional<QString> numberWords(const QString &written);

} // namespace lumaphone::test
