#include "app/inspector/InspectorModel.h"

#include "glossary/LumaphoneGlossaryStore.h"
#include "support/LiveSession.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace inspectormodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Inspector
{
    QTemporaryDir folder;
    LiveSession session;
    LumaphoneGlossaryStore glossary {folder.path(), {}, countedUuids()};
    InspectorModel model {session.make(), session.settings, glossary};
};

LumaphoneGlossaryTerm glossaryTerm(uint number, const QString &source, bool isEnabled = true)
{
    LumaphoneGlossaryTerm term;
    term.id = countedUuid(number);
    term.source = source;
    term.isEnabled = isEnabled;
    return term;
}

QStringList membersOf(const QVariantList &choices, const QString &member)
{
    QStringList list;
    for (const QVariant &choice : choices) {
        list.append(choice.toMap().value(member).toString());
    }
    return list;
}

QStringList titles(const QVariantList &choices)
{
    return membersOf(choices, "title");
}

QStringList symbols(const QVariantList &choices)
{
    return membersOf(choices, "symbol");
}

} // namespace

class InspectorModelTest : public QObject
{
    Q_OBJECT

private slots:
    void theChoicesHaveTheirTitles()
    {
        const Inspector inspector;
        QCOMPARE(titles(inspector.model.audioInputSources()), (QStringList {"系統音訊", "麥克風"}));
        QCOMPARE(
            symbols(inspector.model.audioInputSources()), (QStringList {"speaker.wave.2.fill", "mic.fill"}));
        QCOMPARE(titles(inspector.model.processingModes()), (QStringList {"Apple Mode", "自定義 API"}));
        QCOMPARE(titles(inspector.model.captionThemes()), (QStringList {"深色", "淺色", "玻璃"}));
        QCOMPARE(titles(inspector.model.captionDisplayModes()),
            (QStringList {"雙語", "只顯示譯文", "只顯示原文"}));
        QCOMPARE(titles(inspector.model.sourceLanguages()),
            (QStringList {"自動辨識", "英文", "韓文", "中文", "日文"}));
        QCOMPARE(titles(inspector.model.commandBarLanguages()),
            (QStringList {"自動辨識", "日文", "英文", "韓文", "中文"}));
    }

    void everyLanguageCanBeChosen()
    {
        const Inspector inspector;
        QSet<QString> offered;
        for (const QVariant &choice : inspector.model.sourceLanguages()) {
            offered.insert(choice.toMap().value("value").toString());
        }
        QSet<QString> known;
        for (const AppleSystemSpeechLanguage language : allSpeechLanguages()) {
            known.insert(rawValue(language));
        }
        QCOMPARE(offered, known);
    }

    void aChoiceReachesTheSettingsAndTheSession()
    {
        Inspector inspector;
        inspector.model.setAudioInputSource("microphone");
        inspector.model.setSourceLanguage("english");
        inspector.model.setProcessingMode("customAPI");
        inspector.model.setCaptionTheme("glass");
        inspector.model.setCaptionDisplayMode("sourceOnly");
        inspector.model.setCaptionFontSize(40);
        inspector.model.setCaptionOpacity(0.1 + 0.2);
        const LumaphoneSettings &settings = inspector.session.settings;
        QCOMPARE(settings.audioInputSource(), LumaphoneAudioInputSource::microphone);
        QCOMPARE(inspector.session.controller->audioInputSource(), LumaphoneAudioInputSource::microphone);
        QCOMPARE(settings.sourceLanguage(), AppleSystemSpeechLanguage::english);
        QCOMPARE(inspector.session.controller->sourceLanguage(), AppleSystemSpeechLanguage::english);
        QCOMPARE(settings.processingMode(), LumaphoneProcessingMode::customAPI);
        QCOMPARE(settings.captionTheme(), FloatingCaptionTheme::glass);
        QCOMPARE(settings.captionDisplayMode(), FloatingCaptionDisplayMode::sourceOnly);
        QCOMPARE(settings.captionFontSize(), 40.0);
        QVERIFY(settings.captionOpacity() == 0.3);
        QCOMPARE(inspector.model.fontSizeText(), "40 pt");
        QCOMPARE(inspector.model.opacityText(), "30%");
    }

    void anUnknownChoiceChangesNothing()
    {
        Inspector inspector;
        inspector.model.setCaptionTheme("pink");
        inspector.model.setAudioInputSource("");
        QCOMPARE(inspector.model.captionTheme(), "dark");
        QCOMPARE(inspector.model.audioInputSource(), "systemAudio");
    }

    void whatAProviderCanDoDependsOnItsAddressAndModel_data()
    {
        QTest::addColumn<QString>("baseURL");
        QTest::addColumn<QString>("model");
        QTest::addColumn<bool>("isConfigured");
        QTest::newRow("both") << "http://localhost/v1"
                              << "qwen" << true;
        QTest::newRow("no address") << ""
                                    << "qwen" << false;
        QTest::newRow("no model") << "http://localhost/v1"
                                  << "" << false;
        QTest::newRow("blanks") << " \n"
                                << "qwen" << false;
    }

    void whatAProviderCanDoDependsOnItsAddressAndModel()
    {
        QFETCH(const QString, baseURL);
        QFETCH(const QString, model);
        QFETCH(const bool, isConfigured);
        const QString configured = "qwen 會處理已辨識出的文字，不會直接接收音訊。金鑰：未設定 / 本地端點";
        const QString general
            = "設定 OpenAI-compatible Base URL 與 Model 後，可接手翻譯與文字整理；原文仍由 macOS 先辨識。";
        Inspector inspector;
        const QSignalSpy changed(&inspector.model, &InspectorModel::providerChanged);
        inspector.session.settings.setProviderBaseURL(baseURL);
        inspector.session.settings.setProviderModel(model);
        QVERIFY(!changed.isEmpty());
        inspector.session.keychain.calls.clear();
        QCOMPARE(inspector.model.supportsTextTranslation(), isConfigured);
        QCOMPARE(inspector.model.supportsTextPolishing(), isConfigured);
        QCOMPARE(inspector.model.supportsGlossary(), isConfigured);
        QCOMPARE(inspector.model.providerSummary(), isConfigured ? configured : general);
        // Drawing the inspector must never wait for a keychain.
        QVERIFY(inspector.session.keychain.calls.isEmpty());
    }

    void theGlossaryCountsItsEnabledTerms()
    {
        Inspector inspector;
        QCOMPARE(inspector.model.glossarySummary(), "0 個啟用術語");
        inspector.glossary.add(glossaryTerm(1, "Luma"));
        inspector.glossary.add(glossaryTerm(2, "Codex", false));
        QCOMPARE(inspector.model.glossarySummary(), "1 個啟用術語");
    }
};

LUMAPHONE_TEST(InspectorModelTest)

} // namespace inspectormodeltest

#include "InspectorModelTest.moc"
