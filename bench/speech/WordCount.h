#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

#include <utility>
#include <vector>

namespace lumaphone::bench {

struct WordCount
{
    qsizetype words = 0;
    qsizetype errors = 0;

    WordCount &operator+=(const WordCount &other);
};

/// In one spelling.
WordCount countWords(const QString &transcript, const QString &heard, AppleSystemSpeechLanguage language);

/// Of each set of recordings, by its name.
using SetCounts = std::vector<std::pair<QString, WordCount>>;

WordCount sumOf(const SetCounts &counts);

} // namespace lumaphone::bench
