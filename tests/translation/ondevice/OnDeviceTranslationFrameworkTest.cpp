#include "translation/ondevice/OnDeviceTranslationFramework.h"

#include "models/ModelInstaller.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"
#include "support/engine/GeneratedFolder.h"
#include "support/program/TestProgram.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/engine/Translator.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTest>

namespace ondevicetranslationframeworktest {

using namespace lumaphone;
using engine::test::GeneratedFolder;

namespace {

/// Lists the models that lie in a folder.
QByteArray listing(const GeneratedFolder &folder)
{
    const auto download = [&folder](const QString &role, const QString &name) {
        QFile file(folder.path(name));
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return QStringLiteral(R"({"url": "http:\/\/x\/%1", "compression": "none", "files": [%2]})")
            .arg(name, test::listedFile(role, name, bytes));
    };
    return QStringLiteral(R"({"models": [
    {"id": "ja-en", "kind": "translation", "title": "J", "languages": ["ja", "en"],
     "licence": {"text": "x", "mustBeAccepted": false}, "downloads": [%1, %2]},
    {"id": "en-zh-Hant", "kind": "translation", "title": "E", "languages": ["en", "zh-Hant"],
     "licence": {"text": "x", "mustBeAccepted": false}, "downloads": [%3, %4]}]})")
        .arg(download("model", "ja.bin"), download("sourceVocabulary", "v.spm"), download("model", "en.bin"),
            download("sourceVocabulary", "w.spm"))
        .toUtf8();
}

const QString japanese = QStringLiteral("妹は駅で友達に会いました。");

QString textOf(const std::optional<TranslationFrameworkError> &error)
{
    return error ? error->errorDescription() : QString();
}

} // namespace

class OnDeviceTranslationFrameworkTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const engine::ModelFiles first = m_generated.smallModel();
        QVERIFY(QFile::copy(first.model, m_generated.path("ja.bin")));
        QVERIFY(QFile::copy(first.sourceVocabulary, m_generated.path("v.spm")));
        engine::test::ModelShape other;
        other.seed = 2;
        m_second = std::make_unique<GeneratedFolder>();
        const engine::ModelFiles second = m_second->smallModel(other);
        QVERIFY(QFile::copy(second.model, m_generated.path("en.bin")));
        QVERIFY(QFile::copy(second.sourceVocabulary, m_generated.path("w.spm")));
    }

    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<ModelStore>(
            m_scratch->filePath("模型 é"), ModelCatalogue::fromJson(listing(m_generated), "test"));
        m_framework = std::make_unique<OnDeviceTranslationFramework>(*m_store, m_mainQueue);
    }

    void aPairIsWhatItsModelsAre()
    {
        using enum LanguageAvailabilityStatus;
        QCOMPARE(status("ja", "zh-Hant"), supported);
        QCOMPARE(status("en", "zh-Hant"), supported);
        QCOMPARE(status("ko", "zh-Hant"), unsupported);
        QCOMPARE(status("zh-Hant", "ja"), unsupported);
        install("en-zh-Hant");
        QCOMPARE(status("en", "zh-Hant"), installed);
        QCOMPARE(status("ja", "zh-Hant"), supported);
        install("ja-en");
        QCOMPARE(status("ja", "zh-Hant"), installed);
    }

    void anUnsupportedPairIsNamed()
    {
        const auto session = m_framework->makeSession({"ko"}, {"zh-Hant"});
        QVERIFY(!test::waitFor(session->isReady()));
        QCOMPARE(prepareFailure(*session), QStringLiteral("沒有 ko 到 zh-Hant 的翻譯模型。"));
        QCOMPARE(textOf(test::thrownBy<TranslationFrameworkError>(
                     [&] { test::waitFor(session->translate("안녕하세요", {})); })),
            QStringLiteral("沒有 ko 到 zh-Hant 的翻譯模型。"));
    }

    void aMissingModelIsSaidWithTheWayToInstallIt()
    {
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"ja"}, {"zh-Hant"});
        QCOMPARE(prepareFailure(*session),
            QStringLiteral("尚未安裝 ja 到 zh-Hant 的翻譯模型。請在視窗的「離線模型」安裝，或執行"
                           "「lumaphone-cli models install ja-zh-Hant」。"));
        QVERIFY(!test::waitFor(session->isReady()));
    }

    void anUnfinishedOrDamagedModelIsSaidToo()
    {
        install("en-zh-Hant");
        QVERIFY(QDir().mkpath(m_store->partialFolder(m_store->catalogue().entry("ja-en"))));
        const auto session = m_framework->makeSession({"ja"}, {"zh-Hant"});
        QVERIFY(prepareFailure(*session).startsWith("ja 到 zh-Hant 的翻譯模型還沒有安裝完成。"));
        install("ja-en");
        QVERIFY(QFile::resize(m_store->folder() + "/ja-en/ja.bin", 100));
        QVERIFY(prepareFailure(*session).startsWith("ja 到 zh-Hant 的翻譯模型已損壞。"));
    }

    void damageThatOnlyTheEngineSeesIsSaid()
    {
        install("en-zh-Hant");
        const QString path = m_store->folder() + "/en-zh-Hant/en.bin";
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QCOMPARE(file.write(QByteArray(64, '\xff')), 64);
        file.close();
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        QVERIFY(prepareFailure(*session).contains("en.bin"));
        QVERIFY(!test::waitFor(session->isReady()));
    }

    void aModelThatArrivesLaterIsFound()
    {
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        QVERIFY(!prepareFailure(*session).isEmpty());
        install("en-zh-Hant");
        test::waitFor(session->prepareTranslation({}));
        QVERIFY(test::waitFor(session->isReady()));
    }

    void aServiceThatAskedBeforeTheInstallationTranslatesAfterIt()
    {
        const QString sentence = QStringLiteral("The train is late.");
        LumaphoneAppleTranslationService service(*m_framework);
        QVERIFY(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(service.translate(sentence, "en", "zh-Hant")); }));
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        QCOMPARE(test::waitFor(service.translate(sentence, "en", "zh-Hant")),
            test::waitFor(session->translate(sentence, {})).targetText);
    }

    void thePreparationLeavesTheMainThreadAlone()
    {
        install("ja-en");
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"ja"}, {"zh-Hant"});
        const QCoro::Task<> preparing = session->prepareTranslation({});
        QVERIFY(!preparing.isReady());
        QVERIFY(test::waitUntil([&] { return preparing.isReady(); }));
        QVERIFY(test::waitFor(session->isReady()));
    }

    void aTextTravelsOverAllLegs()
    {
        install("ja-en");
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"ja"}, {"zh-Hant"});
        test::waitFor(session->prepareTranslation({}));
        const TranslationResponse response = test::waitFor(session->translate(japanese, {}));

        const auto leg = [this](const char *model, const char *vocabulary) {
            return std::make_shared<engine::TranslationModel>(
                engine::ModelFiles {m_generated.path(model), m_generated.path(vocabulary), {}, {}});
        };
        engine::Translator expected(
            {leg("ja.bin", "v.spm"), leg("en.bin", "w.spm")}, WrittenChinese::traditional);
        QCOMPARE(response.targetText, expected.translate(japanese));
        QVERIFY(!response.targetText.isEmpty());
    }

    void placeholdersSurvive()
    {
        install("ja-en");
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"ja"}, {"zh-Hant"});
        const TranslationResponse response = test::waitFor(
            session->translate(QStringLiteral("妹はLUMAPHON_TERM_0とLUMAPHON_TERM_1に会いました。"), {}));
        QCOMPARE(response.targetText.count("LUMAPHON_TERM_0"), 1);
        QCOMPARE(response.targetText.count("LUMAPHON_TERM_1"), 1);
    }

    void aStopIsHeeded()
    {
        install("en-zh-Hant");
        std::stop_source stop;
        stop.request_stop();
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        QVERIFY(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(session->prepareTranslation(stop.get_token())); }));
        test::waitFor(session->prepareTranslation({}));
        QVERIFY(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(session->translate("We met at the station.", stop.get_token())); }));
        // The next translation is as good as any.
        QVERIFY(!test::waitFor(session->translate("We met at the station.", {})).targetText.isEmpty());
    }

    void aModelInUseMayBeRemoved()
    {
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        test::waitFor(session->prepareTranslation({}));
        const QString before = test::waitFor(session->translate("We met at the station.", {})).targetText;
        m_store->remove(m_store->catalogue().entry("en-zh-Hant"));
        QCOMPARE(test::waitFor(session->translate("We met at the station.", {})).targetText, before);
        QCOMPARE(status("en", "zh-Hant"), LanguageAvailabilityStatus::supported);
    }

    void aSessionOutlivesItsFramework()
    {
        install("en-zh-Hant");
        const auto session = m_framework->makeSession({"en"}, {"zh-Hant"});
        m_framework.reset();
        QVERIFY(!test::waitFor(session->translate("We met at the station.", {})).targetText.isEmpty());
    }

private:
    void install(const QString &id)
    {
        ModelInstaller installer(*m_store, m_mainQueue);
        test::waitFor(installer.installFrom(m_generated.path({}), id, LicenceConsent::none));
    }
    LanguageAvailabilityStatus status(const QString &source, const QString &target)
    {
        return test::waitFor(m_framework->status({source}, {target}));
    }
    QString prepareFailure(TranslationSession &session)
    {
        return textOf(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(session.prepareTranslation({})); }));
    }

    GeneratedFolder m_generated;
    std::unique_ptr<GeneratedFolder> m_second;
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<ModelStore> m_store;
    std::unique_ptr<OnDeviceTranslationFramework> m_framework;
};

LUMAPHONE_TEST(OnDeviceTranslationFrameworkTest)

} // namespace ondevicetranslationframeworktest

#include "OnDeviceTranslationFrameworkTest.moc"
