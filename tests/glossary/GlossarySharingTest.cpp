#include "glossary/LumaphoneGlossaryStore.h"
#include "support/ChildProcess.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <random>

namespace glossarysharingtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

constexpr int changesOfEach = 1000;

/// What this program does as a child: changes at random what it added itself, and prints what must be left.
int changeAsChild(const QStringList &arguments)
{
    const QString &folder = arguments.at(0);
    const QString &name = arguments.at(1);
    LumaphoneGlossaryStore store(folder, {});
    std::mt19937 random(arguments.at(2).toUInt());
    QList<LumaphoneGlossaryTerm> own;
    for (int change = 0; change < changesOfEach; ++change) {
        const auto which
            = own.isEmpty() ? 0 : static_cast<qsizetype>(random() % static_cast<unsigned>(own.size()));
        switch (own.isEmpty() ? 0U : random() % 4U) {
        case 0:
            own.append(preserved(name + QString::number(change)));
            store.add(own.back());
            break;
        case 1: {
            const LumaphoneGlossaryTerm former = own[which];
            own[which].isEnabled = !former.isEnabled;
            store.replace(former, own[which]);
            break;
        }
        case 2:
            own.append(translated(name + QString::number(change), QStringLiteral("target")));
            store.importTerms(QList {own.back()});
            break;
        default:
            store.remove(own.takeAt(which));
        }
        if (store.lastErrorMessage()) {
            std::fprintf(stderr, "%s\n", qPrintable(*store.lastErrorMessage()));
            return 1;
        }
    }
    for (const QString &line : lines(own)) {
        std::printf("%s\n", qPrintable(line));
    }
    return 0;
}

} // namespace

/// Several programs change one glossary.
class GlossarySharingTest : public QObject
{
    Q_OBJECT

private slots:
    void ofManyChangesOfTwoProcessesNoneIsLost();
};

void GlossarySharingTest::ofManyChangesOfTwoProcessesNoneIsLost()
{
    const QTemporaryDir folder;
    const unsigned seed = std::random_device {}();
    qInfo("seed %u", seed);
    const auto start = [&](const QString &name, unsigned number) {
        return std::make_unique<ChildProcess>(QCoreApplication::applicationFilePath(),
            QStringList {QStringLiteral("GlossarySharingTest.child"), folder.path(), name,
                QString::number(seed + number)});
    };
    const auto one = start(QStringLiteral("one "), 1);
    const auto two = start(QStringLiteral("two "), 2);
    QMap<QString, QStringList> expected;
    for (ChildProcess *child : {one.get(), two.get()}) {
        // They print when they have made all their changes.
        QVERIFY(child->process().waitForFinished(-1));
        QCOMPARE(child->process().exitCode(), 0);
        for (QString line = child->nextLine(); !line.isNull(); line = child->nextLine()) {
            expected[line.left(3)].append(line);
        }
    }
    QMap<QString, QStringList> left;
    const LumaphoneGlossaryStore store(folder.path(), {});
    for (const QString &line : lines(store.terms())) {
        left[line.left(3)].append(line);
    }
    QCOMPARE(left, expected);
    QVERIFY(expected.size() == 2);
}

LUMAPHONE_TEST(GlossarySharingTest)
LUMAPHONE_TEST_CHILD(GlossarySharingTest, changeAsChild)

} // namespace glossarysharingtest

#include "GlossarySharingTest.moc"
