#include "platform/linux/OnDeviceTranslationFramework.h"

#include "support/Coroutines.h"

#include <QObject>
#include <QTest>

using namespace lumaphone;

class OnDeviceTranslationFrameworkTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPairIsUnsupported_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::newRow("English") << "en"
                                 << "zh-Hant";
        QTest::newRow("Japanese") << "ja"
                                  << "zh-Hant";
        QTest::newRow("Korean") << "ko"
                                << "zh-Hant";
        QTest::newRow("unknown") << ""
                                 << "xx";
    }
    void everyPairIsUnsupported()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        OnDeviceTranslationFramework framework;
        QCOMPARE(
            test::waitFor(framework.status({source}, {target})), LanguageAvailabilityStatus::Unsupported);
    }

    void aSessionIsNeverReadyAndNamesItsPairWhenItFails()
    {
        OnDeviceTranslationFramework framework;
        const auto session = framework.makeSession({QStringLiteral("ja")}, {QStringLiteral("zh-Hant")});
        QVERIFY(session);
        QVERIFY(!test::waitFor(session->isReady()));

        const QString text = QStringLiteral("沒有安裝 ja 到 zh-Hant 的翻譯模型。");
        const auto prepareError = test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(session->prepareTranslation({})); });
        QVERIFY(prepareError);
        QCOMPARE(prepareError->errorDescription(), text);
        const auto translateError = test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(session->translate(QStringLiteral("こんにちは"), {})); });
        QVERIFY(translateError);
        QCOMPARE(translateError->errorDescription(), text);
    }
};

QTEST_GUILESS_MAIN(OnDeviceTranslationFrameworkTest)
#include "OnDeviceTranslationFrameworkTest.moc"
