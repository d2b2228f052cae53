#include "translation/engine/Translator.h"

#include "support/engine/GeneratedFolder.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <memory>

namespace translatortest {

using namespace lumaphone;
using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

class TranslatorTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_first = std::make_shared<TranslationModel>(m_firstFolder.smallModel());
        ModelShape other;
        other.seed = 2;
        m_second = std::make_shared<TranslationModel>(m_secondFolder.smallModel(other));
    }

    void oneLegIsTheModelItself()
    {
        Translator translator({m_first}, WrittenChinese::none);
        translator.warmUp();
        QCOMPARE(translator.translate(m_text), m_first->translate(m_text));
    }

    void twoLegsFollowEachOther()
    {
        Translator translator({m_first, m_second}, WrittenChinese::none);
        const QString translated = translator.translate(m_text);
        QCOMPARE(translated, m_second->translate(m_first->translate(m_text)));
        QVERIFY(translated != m_first->translate(m_text));
    }

    void placeholdersSurviveBothLegsAndTheWording()
    {
        Translator translator({m_first, m_second}, WrittenChinese::traditional);
        const QString translated = translator.translate(QStringLiteral("妹はLUMAPHON_TERM_0に会いました。"));
        QVERIFY2(translated.count(QStringLiteral("LUMAPHON_TERM_0")) == 1, qPrintable(translated));
    }

    void theWordingComesLast()
    {
        Translator plain({m_first}, WrittenChinese::none);
        Translator worded({m_first}, WrittenChinese::simplified);
        const TaiwanWording wording(WrittenChinese::simplified);
        QCOMPARE(worded.translate(m_text), wording.rewrite(plain.translate(m_text)));
    }

    void aStopIsHeeded()
    {
        Translator translator({m_first, m_second}, WrittenChinese::none);
        std::stop_source stop;
        stop.request_stop();
        QVERIFY_THROWS_EXCEPTION(EngineError, translator.translate(m_text, stop.get_token()));
    }

private:
    const QString m_text = QStringLiteral("妹はよくパンと牛乳を買いました。");
    GeneratedFolder m_firstFolder;
    GeneratedFolder m_secondFolder;
    std::shared_ptr<TranslationModel> m_first;
    std::shared_ptr<TranslationModel> m_second;
};

LUMAPHONE_TEST(TranslatorTest)

} // namespace translatortest

#include "TranslatorTest.moc"
