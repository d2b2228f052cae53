#include "language/Script.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace scripttest {

using namespace lumaphone;

class ScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void aTextHasTheScriptsOfItsLetters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("scripts");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("Japanese") << "東京のカメラ"
                                  << "kana han";
        QTest::newRow("katakana alone") << "カメラ"
                                        << "kana";
        QTest::newRow("Korean") << "안녕 hello"
                                << "hangul latin";
        QTest::newRow("Chinese") << "今天，12 點"
                                 << "han";
        QTest::newRow("beyond the first plane") << "𠮷"
                                                << "han";
        QTest::newRow("English") << "It's 12."
                                 << "latin";
        QTest::newRow("marks and digits") << "12，。ー・"
                                          << "";
        QTest::newRow("others") << "Привет"
                                << "";
    }
    void aTextHasTheScriptsOfItsLetters()
    {
        QFETCH(QString, text);
        const Scripts found = scriptsIn(text);
        QStringList names;
        for (const auto &[script, name] :
            {std::pair(Script::kana, "kana"), std::pair(Script::hangul, "hangul"),
                std::pair(Script::han, "han"), std::pair(Script::latin, "latin")}) {
            if (found.has(script)) {
                names.append(name);
            }
        }
        QTEST(names.join(' '), "scripts");
    }

    void someLettersTakeNoSpaces_data()
    {
        QTest::addColumn<char32_t>("character");
        QTest::addColumn<bool>("isLetter");
        QTest::addColumn<bool>("isUnspacedCharacter");
        const auto row = [](const char *title, char32_t character, bool isLetter, bool isUnspacedCharacter) {
            QTest::newRow(title) << character << isLetter << isUnspacedCharacter;
        };
        row("Han", U'中', true, true);
        row("Han beyond the first plane", U'𠮷', true, true);
        row("hiragana", U'の', true, true);
        row("katakana", U'カ', true, true);
        row("half-width katakana", U'ｶ', true, true);
        row("Bopomofo", U'ㄅ', true, true);
        row("prolonged sound", U'ー', false, true);
        row("middle dot", U'・', false, true);
        row("ideographic full stop", U'。', false, true);
        row("full-width comma", U'，', false, true);
        row("full-width Latin", U'Ａ', false, true);
        row("Hangul", U'한', false, false);
        row("Latin", U'a', false, false);
        row("digit", U'1', false, false);
        row("full stop", U'.', false, false);
        row("blank", U' ', false, false);
        row("picture", U'😀', false, false);
    }
    void someLettersTakeNoSpaces()
    {
        QFETCH(char32_t, character);
        QTEST(isUnspacedLetter(character), "isLetter");
        QTEST(isUnspaced(character), "isUnspacedCharacter");
    }
};

LUMAPHONE_TEST(ScriptTest)

} // namespace scripttest

#include "ScriptTest.moc"
