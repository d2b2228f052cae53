#include "endtoend/User.h"
#include "support/Coroutines.h"
#include "support/CoveringWindow.h"
#include "support/MuteSecretService.h"
#include "support/PrivateDisplay.h"
#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/PrivateSoundServer.h"
#include "support/RunningProgram.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

namespace windowendtoendtest {

using namespace lumaphone::test;

namespace {

const QList<std::pair<QString, QString>> onX11 {{"QT_QPA_PLATFORM", "xcb"}};

} // namespace

class WindowEndToEndTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_display = std::make_unique<PrivateDisplay>();
        m_bus = std::make_unique<PrivateSessionBus>();
        m_keyring = std::make_unique<PrivateKeyring>(*m_bus);
        m_keyring->start();
        m_sound = std::make_unique<PrivateSoundServer>();
        m_sound->addOutput("speakers");
        m_sound->setDefaultOutput("speakers");
        m_chat = std::make_unique<RunningProgram>(
            QStringLiteral(LUMAPHONE_CHAT_SERVER), QStringList {"--key", "sk-end-to-end"});
        QVERIFY(m_chat->waitForOutput("\n"));
    }

    void aProviderIsSetAndTested()
    {
        User user(m_home.path(), onX11);
        const QByteArray url = m_chat->outputLines().constFirst();
        DO("shown startStop");
        DO("click moreSettings");
        DO("click menu.provider");
        DO("type provider.baseURL " + url);
        DO("type provider.model test-model");
        DO("type provider.apiKey sk-wrong");
        DO("click provider.test");
        DO("await provider.testStatus 401");
        DO("type provider.apiKey sk-end-to-end");
        DO("await provider.keyStatus 儲存後會寫入 macOS 鑰匙圈");
        DO("click provider.test");
        DO("await provider.testStatus 〔");
        DO("click provider.save");
        DO("gone provider.save");
        DO("click moreSettings");
        DO("click menu.diagnosis");
        DO("await diagnosis.flickable 聲音伺服器：");
        DO("click diagnosis.close");
        DO("gone diagnosis.close");
        DO("choose inspector.mode.picker customAPI");
        DO("choose languageMenu english");
        DO("await inspector.providerSummary test-model");
        DO("close");
        QVERIFY(user.program().waitForEnd());
        QCOMPARE(user.program().exitCode(), 0);
        QCOMPARE(m_keyring->itemCount(), 1);
        QFile settings(m_home.filePath("config/lumaphone/settings.json"));
        QVERIFY(!settings.open(QIODevice::ReadOnly) || !settings.readAll().contains("sk-end"));
    }

    void aKeyringThatDoesNotAnswerHoldsNothingUp()
    {
        m_keyring->kill();
        const auto mute = std::make_unique<MuteSecretService>(*m_bus);
        QVERIFY(mute->isThere());
        User user(m_home.path(), onX11);
        DO("shown startStop");
        DO("click moreSettings");
        DO("click menu.provider");
        // This stands there as long as there is no answer: nothing has waited for it.
        DO("await provider.keyStatus 正在查看鑰匙圈裡有沒有 API 金鑰...");
        DO("type provider.apiKey sk-never-kept");
        DO("click provider.save");
        DO("gone provider.save");
        DO("click moreSettings");
        DO("click menu.provider");
        DO("click provider.clearKey");
        DO("await provider.testStatus 已清除鑰匙圈中的 API 金鑰。");
        DO("click provider.cancel");
        DO("gone provider.cancel");
        DO("close");
        QVERIFY(waitUntil([&user] { return !user.program().isRunning(); }));
        QCOMPARE(user.program().exitCode(), 0);
        QVERIFY(mute->calls() > 0);
    }

    void theKeyringIsBack()
    {
        m_keyring->start();
        QCOMPARE(m_keyring->itemCount(), 1);
    }

    void aNewUserIsWelcomedOnce()
    {
        const QTemporaryDir home;
        {
            User user(home.path(), onX11, User::Acquaintance::isNew);
            DO("await welcome.flickable 聲音不會離開這台電腦");
            DO("keyboard");
            DO("click welcome.done");
            DO("gone welcome.done");
            DO("close");
            QVERIFY(user.program().waitForEnd());
        }
        User user(home.path(), onX11, User::Acquaintance::isNew);
        DO("click moreSettings");
        DO("click menu.welcome");
        DO("shown welcome.done");
        DO("close");
        QVERIFY(user.program().waitForEnd());
    }

    void whatWasChosenLastSurvivesATermination()
    {
        const QTemporaryDir home;
        {
            User user(home.path(), onX11);
            DO("choose inspector.source.picker microphone");
            user.program().signal(SIGTERM);
            QVERIFY(user.program().waitForEnd());
            QVERIFY(!user.program().crashed());
            QCOMPARE(user.program().exitCode(), 0);
        }
        QFile settings(home.filePath("config/lumaphone/settings.json"));
        QVERIFY(settings.open(QIODevice::ReadOnly));
        const QByteArray stored = settings.readAll();
        QVERIFY2(stored.contains("\"microphone\""), stored);
    }

    void speechIsCaptionedTranslatedAndSaved()
    {
        User user(m_home.path(), onX11);
        DO("press Ctrl+Shift+F");
        DO("panel 播放影片或會議聲音後，字幕會在這裡即時更新。");
        DO("press Ctrl+Return");
        DO("await startStop 停止");
        DO("await stage.state 正在聽");
        const SoundPlayback speech = m_sound->play(PrivateSoundServer::speechFiles().constFirst());
        DO("count card.lines 1");
        DO("await stage.translationText 〔");
        DO("panel 〔");
        DO("click startStop");
        DO("await startStop 重開");
        DO("await card.status 已整理成字幕稿");
        DO("press Ctrl+Shift+F");
        DO("panel");
        DO("click clear");
        DO("click clearConfirmation.cancel");
        DO("gone clearConfirmation.cancel");
        DO("count card.lines 1");
        DO("press Ctrl+S");
        DO("await review.summary 已儲存");
        DO("await startStop 開始");
        DO("click clear");
        DO("gone reviewBar");

        DO("click workspace.library");
        DO("await library.reader 〔");
        DO("type library.title 傲慢與偏見");
        DO("click library.save");
        DO("await library.list 傲慢與偏見");
        DO("click library.edit");
        DO("type transcriptLine.translation 改過的譯文");
        DO("click library.save");
        DO("click library.edit");
        DO("await library.reader 改過的譯文");
        DO("click library.export");
        DO("click library.export.srt");
        DO("file library.exportDialog " + m_home.filePath("傲慢.srt").toUtf8());
        QVERIFY(contentOf("傲慢.srt").contains("改過的譯文"));
        DO("type library.search 不在這裡");
        DO("await library.empty 找不到符合的字幕紀錄。");
        DO("type library.search 傲慢");
        DO("count library.list 1");

        // The place of the library is taken, as after a disk was changed for another.
        const QString library = m_home.filePath("data/Lumaphone/Transcripts");
        DO("type library.search");
        DO("type library.title 還沒有儲存");
        QVERIFY(QDir().rename(library, library + ".aside"));
        QVERIFY(QFile(library).open(QIODevice::WriteOnly));
        DO("close");
        DO("click unsavedEdit.cancel");
        DO("gone unsavedEdit.cancel");
        QVERIFY(user.program().isRunning());
        QVERIFY(QFile::remove(library));
        QVERIFY(QDir().rename(library + ".aside", library));
        DO("click library.save");
        DO("await library.list 還沒有儲存");
        DO("click library.delete");
        DO("click library.deleteAlert.confirm");
        DO("type library.search");
        DO("await library.empty 尚未儲存任何字幕紀錄。");
        DO("close");
        QVERIFY(user.program().waitForEnd());
        QVERIFY(!user.program().crashed());
        QCOMPARE(user.program().exitCode(), 0);
    }

    void theGlossaryIsKept()
    {
        {
            User user(m_home.path(), onX11);
            DO("click moreSettings");
            DO("click menu.glossary");
            DO("await glossary.empty 先加 Lumaphone、Codex、專案代號，翻譯就比較聽話。");
            DO("type glossary.new.source Lumaphone");
            DO("click glossary.new.add");
            DO("await glossary.list Lumaphone");
            DO("type glossary.new.source Codex");
            DO("click glossary.new.add");
            DO("await glossary.list Codex");
            DO("click glossary.term.0.toggle");
            DO("click glossary.export");
            DO("file glossary.exportDialog " + m_home.filePath("術語.yaml").toUtf8());
            QVERIFY(contentOf("術語.yaml").contains("Codex"));
            QFile imported(m_home.filePath("新的.csv"));
            QVERIFY(imported.open(QIODevice::WriteOnly));
            imported.write("source,target\nNetherfield,尼德斐莊園\n");
            imported.close();
            DO("click glossary.import");
            DO("file glossary.importDialog " + imported.fileName().toUtf8());
            DO("await glossary.list 尼德斐莊園");
            DO("click glossary.done");
            DO("await inspector.glossarySummary 2 個啟用術語");
            DO("close");
            QVERIFY(user.program().waitForEnd());
        }
        User user(m_home.path(), onX11);
        DO("await inspector.glossarySummary 2 個啟用術語");
    }

    void aSessionSurvivesACrash()
    {
        {
            User user(m_home.path(), onX11);
            DO("click startStop");
            DO("await stage.state 正在聽");
            const SoundPlayback speech = m_sound->play(PrivateSoundServer::speechFiles().constFirst());
            DO("count card.lines 1");
            DO("await card.lines 〔");
            user.program().signal(SIGKILL);
            user.program().waitForEnd();
        }
        User user(m_home.path(), onX11);
        DO("await workspace.restored 已恢復上一段尚未儲存的字幕。");
        DO("count card.lines 1");
        DO("await startStop 重開");
        DO("click review.save");
        DO("await review.summary 已儲存");
        DO("gone workspace.restored");
        DO("close");
        QVERIFY(user.program().waitForEnd());
    }

    void closingTheWindowKeepsTheRunningSession()
    {
        {
            User user(m_home.path(), onX11);
            DO("click startStop");
            DO("await stage.state 正在聽");
            const SoundPlayback speech = m_sound->play(PrivateSoundServer::speechFiles().constFirst());
            DO("count card.lines 1");
            DO("close");
            QVERIFY(user.program().waitForEnd());
            QVERIFY(!user.program().crashed());
            QCOMPARE(user.program().exitCode(), 0);
        }
        User user(m_home.path(), onX11);
        DO("await workspace.restored 已恢復");
        DO("click review.discard");
        DO("gone reviewBar");
    }

    void silenceIsToldWhileASessionRuns()
    {
        User user(m_home.path(), onX11);
        DO("click startStop");
        DO("await stage.state 沒有聲音");
        DO("await stage.notice 系統音訊沒有聲音進來");
        const SoundPlayback speech = m_sound->play(PrivateSoundServer::speechFiles().constFirst());
        DO("await stage.state 正在聽");
        DO("gone stage.notice");
    }

    void aSaveThatFailsIsSaidAndLosesNothing()
    {
        const QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkpath("data/Lumaphone"));
        QFile inTheWay(home.filePath("data/Lumaphone/Transcripts"));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        User user(home.path(), onX11);
        DO("choose languageMenu english");
        DO("click startStop");
        DO("await stage.state 正在聽");
        const SoundPlayback speech = m_sound->play(PrivateSoundServer::speechFiles().constFirst());
        DO("count card.lines 1");
        DO("click startStop");
        DO("await startStop 重開");
        DO("press Ctrl+S");
        DO("await workspace.saveError Transcripts");
        DO("count card.lines 1");
        QVERIFY(inTheWay.remove());
        DO("press Ctrl+S");
        DO("await review.summary 已儲存");
        DO("gone workspace.saveError");
    }

    void everythingCanBeDoneWithTheKeyboard()
    {
        User user(m_home.path(), onX11);
        DO("shown startStop");
        DO("keyboard");
        DO("click moreSettings");
        DO("click menu.provider");
        DO("shown provider.save");
        DO("keyboard");
        DO("press Escape");
        DO("gone provider.save");
        DO("click moreSettings");
        DO("click menu.glossary");
        DO("shown glossary.done");
        DO("keyboard");
        DO("press Escape");
        DO("gone glossary.done");
        DO("click workspace.library");
        DO("shown library.search");
        DO("keyboard");
        DO("press Ctrl+F");
        DO("focus library.search.field");
        DO("click workspace.live");
        DO("shown stage.state");
        DO("press Ctrl+Return");
        DO("await startStop 停止");
        DO("keyboard");
        DO("press Ctrl+Return");
        DO("await startStop 開始");
    }

    void aSecondStartRaisesTheFirstWindow()
    {
        User user(m_home.path(), onX11);
        DO("shown startStop");
        DO("active");
        const CoveringWindow cover(*m_display);
        const auto isOnTop = [&cover](const QString &title) {
            return waitUntil([&] { return cover.titleOnTop() == title; });
        };
        QVERIFY2(isOnTop(CoveringWindow::title), qPrintable(cover.titleOnTop()));
        User second(m_home.path(), onX11);
        QVERIFY(second.program().waitForEnd());
        QCOMPARE(second.program().exitCode(), 0);
        QVERIFY2(isOnTop("Lumaphone"), qPrintable(cover.titleOnTop()));
        DO("active");
    }

private:
    QByteArray contentOf(const QString &name) const
    {
        QFile file(m_home.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_home;
    std::unique_ptr<PrivateDisplay> m_display;
    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<PrivateKeyring> m_keyring;
    std::unique_ptr<PrivateSoundServer> m_sound;
    std::unique_ptr<RunningProgram> m_chat;
};

LUMAPHONE_TEST(WindowEndToEndTest)

} // namespace windowendtoendtest

#include "WindowEndToEndTest.moc"
