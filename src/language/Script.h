#pragma once

#include <QString>

namespace lumaphone {

/// The scripts by which the spoken languages are told apart.
enum class Script { kana, hangul, han, latin };

/// Which of them a text has letters of.
class Scripts
{
public:
    bool has(Script script) const { return (m_scripts & bit(script)) != 0; }
    void add(Script script) { m_scripts |= bit(script); }

private:
    static constexpr unsigned bit(Script script) { return 1U << static_cast<unsigned>(script); }

    unsigned m_scripts = 0;
};

Scripts scriptsIn(const QString &text);

/// Whether a character is a letter of a script without spaces between words: Han, kana or Bopomofo. Each of
/// them counts as a word. Hangul has spaces.
bool isUnspacedLetter(char32_t character);

/// Whether no space is wanted beside a character: such letters, and marks and letters as wide as they are.
bool isUnspaced(char32_t character);

} // namespace lumaphone
