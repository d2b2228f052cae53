#include "bench/speech/WordCount.h"

#include "support/speech-scores/WordSpelling.h"

namespace lumaphone::bench {

WordCount &WordCount::operator+=(const WordCount &other)
{
    words += other.words;
    errors += other.errors;
    return *this;
}

WordCount countWords(const QString &transcript, const QString &heard, AppleSystemSpeechLanguage language)
{
    const QStringList spoken = test::spelledWords(transcript, language);
    return {spoken.size(), test::wordErrors(spoken, test::spelledWords(heard, language))};
}

WordCount sumOf(const SetCounts &counts)
{
    WordCount sum;
    for (const auto &[name, count] : counts) {
        sum += count;
    }
    return sum;
}

} // namespace lumaphone::bench
