#include "session/LumaphoneSessionDraftStore.h"

#include "base/AtomicFile.h"
#include "platform/PlatformFolders.h"
#include "support/CaptionLines.h"
#include "support/FileSizeLimit.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace lumaphonesessiondraftstoretest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

LumaphoneSessionDraft draftOf(const QList<LumaphoneCaptionLine> &lines)
{
    return {
        .lines = lines,
        .sourceLanguage = AppleSystemSpeechLanguage::japanese,
        .detectedLanguage = AppleSystemSpeechLanguage::korean,
        .startedAt = QDateTime(QDate(2026, 3, 1), QTime(9, 0), QTimeZone::utc()),
        .endedAt = std::nullopt,
        .updatedAt = QDateTime(QDate(2026, 3, 1), QTime(9, 45), QTimeZone::utc()),
    };
}

class Folders final : public PlatformFolders
{
public:
    explicit Folders(std::optional<QString> applicationSupport)
        : m_applicationSupport(std::move(applicationSupport))
    {
    }
    std::optional<QString> applicationSupport() const override { return m_applicationSupport; }
    std::optional<QString> configuration() const override { return std::nullopt; }
    std::optional<QString> cache() const override { return std::nullopt; }

private:
    std::optional<QString> m_applicationSupport;
};

} // namespace

class LumaphoneSessionDraftStoreTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    QString root() const { return m_folder->filePath(QStringLiteral("a/Drafts")); }
    QStringList entries() const
    {
        return QDir(root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    const QStringList m_draftAlone {QStringLiteral("live-session.json")};

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void liesInTheUsersApplicationSupportFolder()
    {
        QCOMPARE(LumaphoneSessionDraftStore(Folders(QStringLiteral("/home/u/.local/share"))).draftPath(),
            QStringLiteral("/home/u/.local/share/Lumaphone/Drafts/live-session.json"));
        QCOMPARE(LumaphoneSessionDraftStore(Folders(std::nullopt)).draftPath(),
            QDir::homePath() + QStringLiteral("/Lumaphone/Drafts/live-session.json"));
    }

    void aFolderOfItsOwnIsCreatedWithItsParents()
    {
        LumaphoneSessionDraftStore store(root());
        QVERIFY(!QDir(root()).exists());
        store.save(draftOf({captionLine(1, QStringLiteral("今日"))}));
        QCOMPARE(entries(), m_draftAlone);
    }

    void theFileIsPrettyAndSorted()
    {
        LumaphoneSessionDraftStore store(root());
        QList<LumaphoneCaptionLine> lines;
        for (uint i = 0; i < 4; ++i) {
            LumaphoneSessionDraft draft = draftOf(lines);
            store.save(draft);
            QCOMPARE(readFile(store.draftPath()), std::optional(json::pretty(toJson(draft))));
            draft.detectedLanguage.reset();
            draft.startedAt.reset();
            draft.endedAt = draft.updatedAt;
            store.save(draft);
            QCOMPARE(readFile(store.draftPath()), std::optional(json::pretty(toJson(draft))));
            lines.append(captionLine(i, QStringLiteral("[] \"%1\"").arg(i)));
        }
    }

    void whatWasSavedIsLoaded()
    {
        LumaphoneSessionDraftStore store(root());
        QVERIFY(!store.load());
        const LumaphoneSessionDraft draft
            = draftOf({captionLine(1, QStringLiteral("今日")), captionLine(2, QStringLiteral("雨"), false)});
        store.save(draft);
        QVERIFY(LumaphoneSessionDraftStore(root()).load() == draft);
    }

    void clearingRemovesTheFile()
    {
        LumaphoneSessionDraftStore store(root());
        store.clear();
        store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
        store.clear();
        QVERIFY(entries().isEmpty());
        store.clear();
        store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
        QCOMPARE(store.load()->lines.size(), 1);
    }

    void aDraftThatCannotBeReadIsNoneAndStays_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        json::Value withoutUpdate = toJson(draftOf({captionLine(1, QStringLiteral("a"))}));
        withoutUpdate.erase("updatedAt");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("half")
            << json::pretty(toJson(draftOf({captionLine(1, QStringLiteral("a"))}))).left(100);
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("no date") << json::pretty(withoutUpdate);
    }
    void aDraftThatCannotBeReadIsNoneAndStays()
    {
        QFETCH(QByteArray, bytes);
        const LumaphoneSessionDraftStore store(root());
        createFolder(root());
        replaceFile(store.draftPath(), bytes, Durability::renamed);
        QVERIFY(!store.load());
        QCOMPARE(readFile(store.draftPath()), std::optional(bytes));
    }

    void whatAnInterruptedSaveLeftIsTakenAway_data()
    {
        QTest::addColumn<bool>("saves");
        QTest::newRow("by the next save") << true;
        QTest::newRow("by clearing") << false;
    }
    void whatAnInterruptedSaveLeftIsTakenAway()
    {
        QFETCH(bool, saves);
        LumaphoneSessionDraftStore store(root());
        createFolder(root());
        for (const char *name : {"live-session.json.new-Ab3dE9", "live-session.json",
                 "live-session.json.backup", "other.abcdef"}) {
            replaceFile(QDir(root()).filePath(QLatin1String(name)), "x", Durability::renamed);
        }
        // Who only reads may be another process than the one that is saving.
        const QStringList before = entries();
        QVERIFY(!store.load());
        QCOMPARE(entries(), before);
        QStringList left {QStringLiteral("live-session.json.backup"), QStringLiteral("other.abcdef")};
        if (saves) {
            store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
            left.prepend(QStringLiteral("live-session.json"));
        } else {
            store.clear();
        }
        QCOMPARE(entries(), left);
    }

    void aFullDiskKeepsTheOldDraft()
    {
        LumaphoneSessionDraftStore store(root());
        const LumaphoneSessionDraft old = draftOf({captionLine(1, QStringLiteral("a"))});
        store.save(old);
        LumaphoneSessionDraft larger = draftOf({captionLine(1, QStringLiteral("a"))});
        larger.lines.append(captionLine(2, QString(10'000, QLatin1Char('x'))));
        {
            const FileSizeLimit limit(4096);
            store.save(larger);
            QVERIFY(store.load() == old);
        }
        QCOMPARE(entries(), m_draftAlone);
        store.save(larger);
        QVERIFY(store.load() == larger);
    }

    void aFolderThatCannotBeMadeChangesNothing()
    {
        replaceFile(m_folder->filePath(QStringLiteral("a")), "a file in the way", Durability::renamed);
        LumaphoneSessionDraftStore store(root());
        store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
        QVERIFY(!store.load());
        store.clear();
        removeFile(m_folder->filePath(QStringLiteral("a")));
        store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
        QVERIFY(store.load());
    }

    void aFolderInTheFilesPlaceChangesNothing()
    {
        LumaphoneSessionDraftStore store(root());
        createFolder(store.draftPath() + QStringLiteral("/occupied"));
        store.save(draftOf({captionLine(1, QStringLiteral("a"))}));
        store.clear();
        QVERIFY(!store.load());
        QCOMPARE(entries(), m_draftAlone);
    }
};

LUMAPHONE_TEST(LumaphoneSessionDraftStoreTest)

} // namespace lumaphonesessiondraftstoretest

#include "LumaphoneSessionDraftStoreTest.moc"
