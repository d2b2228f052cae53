#include "session/LumaphoneTranscriptProcessor.h"

#include "platform/BundleResources.h"
#include "session/HelperProcess.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace lumaphonetranscriptprocessortest {

using namespace lumaphone;

namespace {

class OneResource final : public BundleResources
{
public:
    explicit OneResource(QString name)
        : m_name(std::move(name))
    {
    }
    std::optional<QString> path(const QString &name) const override
    {
        return name == m_name ? std::optional(QStringLiteral("/bundle/") + name) : std::nullopt;
    }

private:
    QString m_name;
};

QByteArray answering(const QByteArray &output)
{
    return "cat >/dev/null\nprintf '%s' '" + output + "'\n";
}

} // namespace

class LumaphoneTranscriptProcessorTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_helpers = 0;

    /// A stand-in helper: a shell script with that body.
    QString helper(const QByteArray &body, int mode = 0755)
    {
        const QString path = m_folder.filePath(QStringLiteral("helper%1").arg(++m_helpers));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("cannot write %s", qPrintable(path));
        }
        file.write("#!/bin/sh\n" + body);
        file.close();
        ::chmod(QFile::encodeName(path).constData(), mode_t(mode));
        return path;
    }

    static CoreRevisionDecision decisionOf(const QString &executable)
    {
        return LumaphoneTranscriptProcessor(executable)
            .coreRevisionDecision(QStringLiteral("今日は"), QStringLiteral("今日は雨"));
    }

private slots:
    void theHelperIsTheBundlesResource()
    {
        const QString name = QStringLiteral("lumaphone-core-cli");
        QCOMPARE(LumaphoneTranscriptProcessor(OneResource(name)).executableURL(),
            std::optional(QStringLiteral("/bundle/lumaphone-core-cli")));
        QCOMPARE(
            LumaphoneTranscriptProcessor(OneResource(QStringLiteral("other"))).executableURL(), std::nullopt);
    }

    void withoutAHelperThereIsNoAnswerAndTheRuleDecides()
    {
        const LumaphoneTranscriptProcessor processor(std::nullopt);
        QCOMPARE(processor.coreRevisionDecision(QStringLiteral("a"), QStringLiteral("a")),
            CoreRevisionDecision::noAnswer);
        QVERIFY(processor.isRevision(QStringLiteral("今日は"), QStringLiteral("今日は雨")));
        QVERIFY(!processor.isRevision(QStringLiteral("今日は"), QString()));
    }

    void takesTheAnswerOnlyOfAWellBehavedHelper_data()
    {
        using enum CoreRevisionDecision;
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<CoreRevisionDecision>("decision");
        QTest::newRow("yes") << answering(R"({"is_revision":true})") << yes;
        QTest::newRow("no") << answering(R"({"is_revision":false})") << no;
        QTest::newRow("other members and a line break")
            << answering("{\"why\":{},\"is_revision\":true}\n") << yes;
        QTest::newRow("exit status 1") << answering(R"({"is_revision":true})") + "exit 1\n" << noAnswer;
        QTest::newRow("ended by a signal") << answering(R"({"is_revision":true})") + "kill -9 $$\n"
                                           << noAnswer;
        QTest::newRow("garbage") << answering("\\377\\001{{{") << noAnswer;
        QTest::newRow("the bare word yes") << answering("yes") << noAnswer;
        QTest::newRow("nothing") << QByteArray("cat >/dev/null\n") << noAnswer;
        QTest::newRow("no boolean") << answering(R"({"is_revision":"true"})") << noAnswer;
        QTest::newRow("no such member") << answering(R"({"revision":true})") << noAnswer;
        QTest::newRow("a megabyte on standard error")
            << "head -c 1000000 /dev/zero >&2\n" + answering(R"({"is_revision":true})") << yes;
        QTest::newRow("a large answer")
            << QByteArray("cat >/dev/null\nprintf '{\"is_revision\":true,\"pad\":\"'\n"
                          "head -c 300000 /dev/zero | tr '\\0' x\nprintf '\"}'\n")
            << yes;
        QTest::newRow("answers without reading") << QByteArray("printf '{\"is_revision\":true}'\n") << yes;
        QTest::newRow("closes its input unread")
            << QByteArray("exec <&-\nprintf '{\"is_revision\":true}'\n") << yes;
        QTest::newRow("closes its output first, then fails")
            << QByteArray("printf '{\"is_revision\":true}'\nexec >&-\ncat >/dev/null\nexit 3\n") << noAnswer;
    }
    void takesTheAnswerOnlyOfAWellBehavedHelper()
    {
        QFETCH(QByteArray, script);
        QTEST(decisionOf(helper(script)), "decision");
    }

    void aHelperThatCannotBeStartedGivesNoAnswer()
    {
        QCOMPARE(decisionOf(m_folder.filePath(QStringLiteral("missing"))), CoreRevisionDecision::noAnswer);
        QCOMPARE(
            decisionOf(helper(answering(R"({"is_revision":true})"), 0644)), CoreRevisionDecision::noAnswer);
        QCOMPARE(decisionOf(m_folder.path()), CoreRevisionDecision::noAnswer);
        QCOMPARE(decisionOf(QString()), CoreRevisionDecision::noAnswer);
    }

    void theHelpersAnswerWinsOverTheRule()
    {
        const QString same = QStringLiteral("同じ");
        QVERIFY(!LumaphoneTranscriptProcessor(helper(answering(R"({"is_revision":false})")))
                     .isRevision(same, same));
        QVERIFY(LumaphoneTranscriptProcessor(helper(answering(R"({"is_revision":true})")))
                    .isRevision(QStringLiteral("abc"), QStringLiteral("xyz")));
    }

    void theRuleDecidesWhereTheHelperFails()
    {
        const LumaphoneTranscriptProcessor failing(helper("exit 1\n"));
        QVERIFY(failing.isRevision(QStringLiteral("a"), QStringLiteral("ab")));
        QVERIFY(!failing.isRevision(QStringLiteral("a"), QStringLiteral("b")));
    }

    void theHelperReceivesTheWholeRequest()
    {
        const QString seen = m_folder.filePath(QStringLiteral("seen"));
        const LumaphoneTranscriptProcessor processor(
            helper("cat >'" + QFile::encodeName(seen) + "'\nprintf '{\"is_revision\":true}'\n"));
        QCOMPARE(processor.coreRevisionDecision(QStringLiteral(" Ａ \"b\""), QStringLiteral("ア\n")),
            CoreRevisionDecision::yes);
        QFile file(seen);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
            QByteArray("{\"operation\":\"is_revision\",\"current_text\":\" Ａ \\\"b\\\"\","
                       "\"incoming_text\":\"ア\\n\"}"));
    }

    void aRequestLargerThanThePipeIsReadToItsEnd()
    {
        const QByteArray input(1'000'000, 'x');
        QCOMPARE(exchangeWithHelper(helper("wc -c | tr -d ' \\n'\n"), input),
            std::optional(QByteArray("1000000")));
        QCOMPARE(exchangeWithHelper(helper("cat\n"), input), std::optional(input));
    }

    void aLargeRequestIsNoHarmWhenNobodyReadsIt()
    {
        const QString large(1'000'000, QLatin1Char('x'));
        QCOMPARE(LumaphoneTranscriptProcessor(helper("exec <&-\nprintf '{\"is_revision\":false}'\n"))
                     .coreRevisionDecision(large, large),
            CoreRevisionDecision::no);
        QCOMPARE(LumaphoneTranscriptProcessor(helper("exit 1\n")).coreRevisionDecision(large, large),
            CoreRevisionDecision::noAnswer);
        // The signal for a broken pipe was taken back with the exchange.
        sigset_t pending;
        sigset_t mask;
        sigpending(&pending);
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        QCOMPARE(sigismember(&pending, SIGPIPE), 0);
        QCOMPARE(sigismember(&mask, SIGPIPE), 0);
    }

    void aSlowHelperIsWaitedFor()
    {
        const QByteArray fifo = QFile::encodeName(m_folder.filePath(QStringLiteral("fifo")));
        QCOMPARE(::mkfifo(fifo.constData(), 0600), 0);
        // The script's read of the fifo, and this open for writing, wait for each other.
        const QString slow = helper("cat >/dev/null\ncat '" + fifo + "'\n");
        std::thread answer([&fifo] {
            const int fd = ::open(fifo.constData(), O_WRONLY | O_CLOEXEC);
            const QByteArray yes = R"({"is_revision":true})";
            if (::write(fd, yes.constData(), std::size_t(yes.size())) != yes.size()) {
                qFatal("cannot write to the fifo");
            }
            ::close(fd);
        });
        const CoreRevisionDecision decision = decisionOf(slow);
        answer.join();
        QCOMPARE(decision, CoreRevisionDecision::yes);
    }

    void theHelperInheritsTheEnvironmentAndNoOtherFile()
    {
        qputenv("LUMAPHONE_TEST_VALUE", "seen");
        const int inheritable = ::open("/dev/null", O_RDONLY);
        const auto output = exchangeWithHelper(
            helper("printf '%s ' \"$LUMAPHONE_TEST_VALUE\"\necho $# $(ls /proc/$$/fd)\n"), {});
        ::close(inheritable);
        QVERIFY(output);
        const QList<QByteArray> words = output->simplified().split(' ');
        QCOMPARE(words.value(0), QByteArray("seen"));
        QCOMPARE(words.value(1), QByteArray("0"));
        QVERIFY2(!words.mid(2).contains(QByteArray::number(inheritable)), output->constData());
    }

    void manyExchangesLeaveNothingBehind()
    {
        const auto openFiles = [] {
            return QDir(QStringLiteral("/proc/self/fd")).entryList().size();
        };
        const LumaphoneTranscriptProcessor failing(helper("exit 1\n"));
        const LumaphoneTranscriptProcessor missing(m_folder.filePath(QStringLiteral("missing")));
        failing.coreRevisionDecision(QString(), QString());
        const auto before = openFiles();
        for (int i = 0; i < 50; ++i) {
            failing.coreRevisionDecision(QStringLiteral("a"), QStringLiteral("b"));
            missing.coreRevisionDecision(QStringLiteral("a"), QStringLiteral("b"));
        }
        QCOMPARE(openFiles(), before);
    }

    void theShippedHelperAppliesTheRule()
    {
        const LumaphoneTranscriptProcessor processor(QStringLiteral(LUMAPHONE_CORE_CLI));
        QCOMPARE(processor.coreRevisionDecision(QStringLiteral("ガラス"), QStringLiteral("がらすの")),
            CoreRevisionDecision::yes);
        QCOMPARE(processor.coreRevisionDecision(QStringLiteral("はい"), QStringLiteral("いいえ")),
            CoreRevisionDecision::no);
    }

    void theShippedHelperAnswersManyQuestionsInOneRun()
    {
        const QString runs = m_folder.filePath(QStringLiteral("runs"));
        const LumaphoneTranscriptProcessor processor(
            helper("echo run >>'" + QFile::encodeName(runs) + "'\nexec \"" LUMAPHONE_CORE_CLI "\"\n"));
        const QStringList texts {QStringLiteral("ガラス"), QStringLiteral("がらすの"),
            QStringLiteral("いいえ"), QString(), QStringLiteral("hello word"), QStringLiteral("hello world")};
        const QList<bool> answers {true, false, false, false, true};
        QCOMPARE(processor.areRevisions(texts), answers);
        QFile file(runs);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("run\n"));
        QCOMPARE(LumaphoneTranscriptProcessor(std::nullopt).areRevisions(texts), answers);
    }

    void aHelperThatKnowsOnlySingleQuestionsIsAskedThose_data()
    {
        QTest::addColumn<QByteArray>("toMany");
        QTest::newRow("fails") << QByteArray("exit 1");
        QTest::newRow("answers as to a single one") << QByteArray("printf '{\"is_revision\":true}'");
        QTest::newRow("too few answers") << QByteArray("printf '{\"are_revisions\":[true]}'");
        QTest::newRow("too many answers") << QByteArray("printf '{\"are_revisions\":[true,true,true]}'");
        QTest::newRow("answers of another kind") << QByteArray("printf '{\"are_revisions\":[1,0]}'");
        QTest::newRow("no list") << QByteArray("printf '{\"are_revisions\":true}'");
    }
    void aHelperThatKnowsOnlySingleQuestionsIsAskedThose()
    {
        QFETCH(QByteArray, toMany);
        // Its decisions are the opposite of the rule's.
        const LumaphoneTranscriptProcessor processor(helper("case $(cat) in\n"
                                                            "*'\"are_revisions\"'*) "
            + toMany
            + ";;\n"
              "*'\"current_text\":\"a\"'*) printf '{\"is_revision\":false}';;\n"
              "*) printf '{\"is_revision\":true}';;\nesac\n"));
        QCOMPARE(processor.areRevisions({QStringLiteral("a"), QStringLiteral("ab"), QStringLiteral("xyz")}),
            (QList<bool> {false, true}));
    }

    void fewTextsAreNoOrOneQuestion()
    {
        const LumaphoneTranscriptProcessor processor(helper(answering(R"({"is_revision":true})")));
        QCOMPARE(processor.areRevisions({}), QList<bool>());
        QCOMPARE(processor.areRevisions({QStringLiteral("a")}), QList<bool>());
        QCOMPARE(processor.areRevisions({QStringLiteral("a"), QStringLiteral("b")}), QList<bool> {true});
    }

    void theShippedHelperRefusesMalformedRequests()
    {
        const QString helper = QStringLiteral(LUMAPHONE_CORE_CLI);
        QCOMPARE(exchangeWithHelper(helper, QByteArray()), std::nullopt);
        QCOMPARE(exchangeWithHelper(helper, QByteArray("{}")), std::nullopt);
        QCOMPARE(exchangeWithHelper(
                     helper, QByteArray(R"({"operation":"x","current_text":"a","incoming_text":"a"})")),
            std::nullopt);
        QCOMPARE(exchangeWithHelper(helper, QByteArray(R"({"operation":"are_revisions","texts":["a",1]})")),
            std::nullopt);
        QCOMPARE(exchangeWithHelper(helper, QByteArray(R"({"operation":"are_revisions","texts":"a"})")),
            std::nullopt);
        QCOMPARE(exchangeWithHelper(
                     this->helper("\"" LUMAPHONE_CORE_CLI "\" <<END\nno JSON\nEND\necho \" $?\"\n"), {}),
            std::optional(QByteArray(" 1\n")));
    }
};

LUMAPHONE_TEST(LumaphoneTranscriptProcessorTest)

} // namespace lumaphonetranscriptprocessortest

#include "LumaphoneTranscriptProcessorTest.moc"
