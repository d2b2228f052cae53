#include "app/glossary/GlossarySettingsModel.h"

#include "app/glossary/GlossaryTermTexts.h"
#include "base/AtomicFile.h"
#include "base/LocalizedError.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "support/Coroutines.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace glossarysettingsmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Fixture
{
    QTemporaryDir folder;
    QStringList revealed;
    QString viewerFailure;
    LumaphoneGlossaryStore store {folder.filePath("glossary"), [this](const QString &path) {
                                      return reveal(path);
                                  }};
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    std::chrono::milliseconds timeToRegret = GlossarySettingsModel::timeToRegret;
    GlossarySettingsModel model {store, mainQueue, &QUuid::createUuid, timeToRegret};

    explicit Fixture(std::chrono::milliseconds regret = GlossarySettingsModel::timeToRegret)
        : timeToRegret(regret)
    {
    }
    ~Fixture() { mainQueue->close(); }
    /// What another program would read.
    QList<LumaphoneGlossaryTerm> stored() const
    {
        return LumaphoneGlossaryStore(folder.filePath("glossary"), {}).terms();
    }
    QCoro::Task<> reveal(QString path)
    {
        revealed << path;
        if (!viewerFailure.isEmpty()) {
            throw PlatformError(viewerFailure);
        }
        co_return;
    }
    QUrl write(const char *name, const QByteArray &bytes) const
    {
        replaceFile(folder.filePath(name), bytes, Durability::renamed);
        return QUrl::fromLocalFile(folder.filePath(name));
    }
    /// Imports and waits for the end.
    bool import(const QList<QUrl> &files)
    {
        model.importFiles(files);
        return waitUntil([this] { return !model.isImporting(); });
    }
    QStringList rows() const
    {
        const auto &list = *const_cast<GlossarySettingsModel &>(model).terms();
        return sources(list.terms());
    }
};

} // namespace

class GlossarySettingsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsDescribeTheirTerm_data()
    {
        QTest::addColumn<LumaphoneGlossaryTermMode>("mode");
        QTest::addColumn<bool>("isSensitive");
        QTest::addColumn<QString>("detail");
        using Mode = LumaphoneGlossaryTermMode;
        QTest::newRow("preserve") << Mode::preserve << false << "保留原文";
        QTest::newRow("translate") << Mode::translate << false << "固定譯法";
        QTest::newRow("preserve, sensitive") << Mode::preserve << true << "保留原文 · 大小寫敏感";
        QTest::newRow("translate, sensitive") << Mode::translate << true << "固定譯法 · 大小寫敏感";
    }
    void rowsDescribeTheirTerm()
    {
        QFETCH(LumaphoneGlossaryTermMode, mode);
        QFETCH(bool, isSensitive);
        LumaphoneGlossaryTerm term = translated("a", "b");
        term.mode = mode;
        term.caseSensitive = isSensitive;
        QTEST(termDetail(term), "detail");
    }

    void onlyUsableTermsCanBeAdded_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<bool>("isUsable");
        QTest::newRow("empty") << ""
                               << ""
                               << "preserve" << false;
        QTest::newRow("blank source") << " \t"
                                      << "x"
                                      << "translate" << false;
        QTest::newRow("kept without target") << "Qt"
                                             << ""
                                             << "preserve" << true;
        QTest::newRow("kept with target") << "Qt"
                                          << "Qt"
                                          << "preserve" << true;
        QTest::newRow("translated") << "fox"
                                    << "狐狸"
                                    << "translate" << true;
        QTest::newRow("translated without target") << "fox"
                                                   << " "
                                                   << "translate" << false;
    }
    void onlyUsableTermsCanBeAdded()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QString, mode);
        QFETCH(bool, isUsable);
        Fixture f;
        GlossaryTermEditor &editor = *f.model.newTerm();
        editor.setSource(source);
        editor.setTarget(target);
        editor.setMode(mode);
        QCOMPARE(editor.isUsable(), isUsable);
        f.model.addTerm();
        QCOMPARE(f.store.terms().size(), isUsable ? 1 : 0);
    }

    void anAddedTermIsStoredAndItsFieldsAreEmptied()
    {
        Fixture f;
        const QAbstractItemModelTester tester(f.model.terms());
        GlossaryTermEditor &editor = *f.model.newTerm();
        QSignalSpy usable(&editor, &GlossaryTermEditor::isUsableChanged);
        editor.setSource(" fox ");
        editor.setTarget("狐狸");
        editor.setMode("translate");
        editor.setCaseSensitive(true);
        f.model.addTerm();
        QCOMPARE(lines(f.store.terms()), QStringList("fox|狐狸|translate||true|true"));
        QVERIFY(!f.store.terms().front().id.isNull());
        QCOMPARE(editor.source(), QString());
        QCOMPARE(editor.target(), QString());
        QCOMPARE(editor.mode(), QString("translate"));
        QVERIFY(!editor.isUsable());
        QCOMPARE(usable.count(), 2);
        QCOMPARE(f.rows(), QStringList("fox"));
        const QModelIndex row = f.model.terms()->index(0);
        QCOMPARE(row.data(GlossaryTermListModel::TargetRole).toString(), QString("狐狸"));
        QCOMPARE(row.data(GlossaryTermListModel::DetailRole).toString(), QString("固定譯法 · 大小寫敏感"));
        QCOMPARE(row.data(GlossaryTermListModel::EnabledRole).toBool(), true);
    }

    void anUnknownModeIsNotTaken()
    {
        GlossaryTermEditor editor;
        editor.setMode("translate");
        editor.setMode("Preserve");
        QCOMPARE(editor.mode(), QString("translate"));
    }

    void modesHaveTitles()
    {
        Fixture f;
        QStringList modes;
        for (const QVariant &mode : f.model.modes()) {
            modes << mode.toMap().value("value").toString() + " " + mode.toMap().value("title").toString();
        }
        QCOMPARE(modes, QStringList({"preserve 保留原文", "translate 固定譯法"}));
    }

    void termsAreToggledAndRemovedByRow()
    {
        Fixture f;
        f.store.add(preserved("a"));
        f.store.add(preserved("b"));
        f.model.toggle(1);
        QVERIFY(!f.store.terms()[1].isEnabled);
        f.model.toggle(1);
        QVERIFY(f.store.terms()[1].isEnabled);
        f.model.remove(0);
        QCOMPARE(sources(f.store.terms()), QStringList("b"));
        for (const int row : {-1, 1}) {
            f.model.toggle(row);
            f.model.remove(row);
            f.model.edit(row);
        }
        QCOMPARE(sources(f.store.terms()), QStringList("b"));
        QVERIFY(!f.model.isEditing());
    }

    void aDeletedTermIsPutBackWhereItWas()
    {
        Fixture f;
        for (const char *source : {"a", "b", "c"}) {
            f.store.add(preserved(source));
        }
        const auto before = f.store.terms();
        QCOMPARE(f.model.undoDeletion(), -1);
        f.model.remove(1);
        QCOMPARE(f.model.deletionNotice(), QString("已刪除「b」。"));
        QCOMPARE(sources(f.stored()), QStringList({"a", "c"}));
        QCOMPARE(f.model.undoDeletion(), 1);
        QCOMPARE(f.store.terms(), before);
        QCOMPARE(f.stored(), before);
        QVERIFY(f.model.deletionNotice().isEmpty());
        QCOMPARE(f.model.undoDeletion(), -1);
        QCOMPARE(f.store.terms(), before);
    }

    void onlyTheLastDeletionIsOffered()
    {
        Fixture f;
        for (const char *source : {"a", "b", "c"}) {
            f.store.add(preserved(source));
        }
        f.model.remove(2);
        f.model.remove(0);
        QCOMPARE(f.model.deletionNotice(), QString("已刪除「a」。"));
        QCOMPARE(f.model.undoDeletion(), 0);
        QCOMPARE(sources(f.store.terms()), QStringList({"a", "b"}));
    }

    void whatComesAfterADeletionEndsTheOffer_data()
    {
        QTest::addColumn<std::function<void(Fixture &)>>("change");
        using Change = std::function<void(Fixture &)>;
        QTest::newRow("a new term") << Change([](Fixture &f) {
            f.model.newTerm()->setSource("new");
            f.model.addTerm();
        });
        QTest::newRow("a switched term") << Change([](Fixture &f) { f.model.toggle(0); });
        QTest::newRow("the closed sheet") << Change([](Fixture &f) { f.model.dismissMessages(); });
        QTest::newRow("another program's change") << Change([](Fixture &f) {
            LumaphoneGlossaryStore other(f.folder.filePath("glossary"), {});
            other.add(preserved("of another"));
            f.model.refresh();
        });
    }

    void whatComesAfterADeletionEndsTheOffer()
    {
        QFETCH(std::function<void(Fixture &)>, change);
        Fixture f;
        f.store.add(preserved("a"));
        f.store.add(preserved("b"));
        f.model.remove(1);
        QVERIFY(!f.model.deletionNotice().isEmpty());
        change(f);
        QVERIFY(f.model.deletionNotice().isEmpty());
        QCOMPARE(f.model.undoDeletion(), -1);
        QVERIFY(!sources(f.store.terms()).contains("b"));
    }

    void theOfferEndsByItself()
    {
        Fixture f(std::chrono::milliseconds(1));
        f.store.add(preserved("a"));
        f.model.remove(0);
        QVERIFY(waitUntil([&] { return f.model.deletionNotice().isEmpty(); }));
        QCOMPARE(f.model.undoDeletion(), -1);
        QVERIFY(f.store.terms().isEmpty());
    }

    void anEditedTermReplacesTheFormerOne()
    {
        Fixture f;
        f.store.add(preserved("a"));
        f.store.add(preserved("b"));
        const QUuid id = f.store.terms()[1].id;
        f.model.edit(1);
        QVERIFY(f.model.isEditing());
        GlossaryTermEditor &editor = *f.model.editingTerm();
        QCOMPARE(editor.source(), QString("b"));
        editor.setSource("B");
        editor.setTarget("乙");
        editor.setMode("translate");
        editor.setNote("note");
        editor.setEnabled(false);
        editor.setCaseSensitive(true);
        f.model.saveEditedTerm();
        QVERIFY(!f.model.isEditing());
        QCOMPARE(line(f.store.terms()[1]), QString("B|乙|translate|note|false|true"));
        QCOMPARE(f.store.terms()[1].id, id);
        QCOMPARE(f.rows(), QStringList({"a", "B"}));
    }

    void aTermThatWouldNeverBeUsedIsNotSaved()
    {
        Fixture f;
        f.store.add(preserved("a"));
        f.model.edit(0);
        f.model.editingTerm()->setSource(" ");
        f.model.saveEditedTerm();
        QVERIFY(f.model.isEditing());
        f.model.cancelEditing();
        QCOMPARE(f.rows(), QStringList("a"));
    }

    void aChangedListIsTakenOverByItsDifference_data()
    {
        QTest::addColumn<QStringList>("from");
        QTest::addColumn<QStringList>("to");
        QTest::addColumn<QString>("announced");
        const auto list = [](const char *text) {
            return QString(text).split(' ', Qt::SkipEmptyParts);
        };
        QTest::newRow("the same") << list("a b") << list("a b") << "";
        QTest::newRow("appended") << list("a b") << list("a b c d") << "+2-3";
        QTest::newRow("removed in the middle") << list("a b c") << list("a c") << "-1-1";
        QTest::newRow("changed") << list("a b c") << list("a x c") << "~1-1";
        QTest::newRow("emptied") << list("a b") << list("") << "-0-1";
        QTest::newRow("filled") << list("") << list("a") << "+0-0";
        QTest::newRow("one of two equal ones removed") << list("a a b") << list("a b") << "-1-1";
        QTest::newRow("changed and appended") << list("a b") << list("x b c") << "~0-1 +2-2";
    }
    void aChangedListIsTakenOverByItsDifference()
    {
        QFETCH(QStringList, from);
        QFETCH(QStringList, to);
        const auto terms = [](const QStringList &sources) {
            QList<LumaphoneGlossaryTerm> list;
            for (const QString &source : sources) {
                list << preserved(source);
            }
            return list;
        };
        GlossaryTermListModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setTerms(terms(from));
        QStringList announced;
        connect(
            &model, &QAbstractItemModel::rowsInserted, this, [&](const QModelIndex &, int first, int last) {
                announced << QString("+%1-%2").arg(first).arg(last);
            });
        connect(
            &model, &QAbstractItemModel::rowsRemoved, this, [&](const QModelIndex &, int first, int last) {
                announced << QString("-%1-%2").arg(first).arg(last);
            });
        connect(&model, &QAbstractItemModel::dataChanged, this,
            [&](const QModelIndex &first, const QModelIndex &last) {
                announced << QString("~%1-%2").arg(first.row()).arg(last.row());
            });
        model.setTerms(terms(to));
        QCOMPARE(sources(model.terms()), to);
        QTEST(announced.join(' '), "announced");
    }

    void importingReadsEveryFileInTheBackground()
    {
        Fixture f;
        f.store.add(preserved("known"));
        const QUrl csv = f.write("a.csv", "source,target\nfox,狐狸\nKnown,x\n");
        const QUrl yaml = f.write("b.yaml", "- source: dog\n  target: 狗\n");
        f.model.importFiles({csv, yaml});
        // Nothing has been waited for.
        QVERIFY(f.model.isImporting());
        QCOMPARE(f.rows(), QStringList("known"));
        QVERIFY(waitUntil([&] { return !f.model.isImporting(); }));
        QCOMPARE(f.rows(), QStringList({"known", "fox", "dog"}));
        QCOMPARE(f.model.notice(), QString("已加入 2 個術語。"));
        QCOMPARE(f.model.importError(), QString());
    }

    void anImportWithoutNewTermsSaysSo()
    {
        Fixture f;
        QVERIFY(f.import({f.write("a.yml", "# nothing")}));
        QCOMPARE(f.model.notice(), QString("檔案裡沒有新的術語。"));
    }

    void aFailedImportSaysWhyAndKeepsTheList()
    {
        Fixture f;
        f.store.add(preserved("known"));
        QVERIFY(f.import({f.write("a.txt", "x")}));
        QCOMPARE(f.model.importError(), QString("Glossary 只支援 JSON、YAML 或 CSV。"));
        QCOMPARE(f.rows(), QStringList("known"));
        QVERIFY(f.import({f.write("b.json", "[{}]")}));
        QCOMPARE(f.model.importError(), QString("第 1 個術語：JSON 缺少欄位「mode」。"));
        QVERIFY(f.import({QUrl::fromLocalFile(f.folder.filePath("gone.csv"))}));
        QVERIFY(f.model.importError().contains("gone.csv"));
        QVERIFY(f.import({f.write("c.csv", "fox,狐狸")}));
        QCOMPARE(f.model.importError(), QString());
        f.model.dismissMessages();
        QCOMPARE(f.model.notice(), QString());
    }

    void theFirstFailureEndsAnImport()
    {
        Fixture f;
        QVERIFY(f.import({f.write("a.csv", "fox,狐狸"), f.write("b.txt", ""), f.write("c.csv", "dog,狗")}));
        QCOMPARE(f.rows(), QStringList("fox"));
        QCOMPARE(f.model.importError(), QString("Glossary 只支援 JSON、YAML 或 CSV。"));
        QCOMPARE(f.model.notice(), QString());
    }

    void aSecondImportWhileOneRunsIsIgnored()
    {
        Fixture f;
        const QUrl first = f.write("a.csv", "fox,狐狸");
        const QUrl second = f.write("b.csv", "dog,狗");
        f.model.importFiles({first});
        f.model.importFiles({second});
        f.model.importFiles({});
        QVERIFY(waitUntil([&] { return !f.model.isImporting(); }));
        QCOMPARE(f.rows(), QStringList("fox"));
    }

    void aSheetThatIsGoneImportsNothing()
    {
        QTemporaryDir folder;
        LumaphoneGlossaryStore store(folder.filePath("glossary"), {});
        const auto mainQueue = MainQueue::create();
        auto model = std::make_unique<GlossarySettingsModel>(store, mainQueue);
        replaceFile(folder.filePath("a.csv"), "fox,狐狸", Durability::renamed);
        model->importFiles({QUrl::fromLocalFile(folder.filePath("a.csv"))});
        model.reset();
        bool passed = false;
        // What is posted later runs later: by then the import has come back.
        QVERIFY(waitUntil([&] {
            mainQueue->post([&] { passed = true; });
            settle();
            return passed;
        }));
        QCOMPARE(store.terms().size(), 0);
        mainQueue->close();
    }

    void anExportReadsBack()
    {
        Fixture f;
        QCOMPARE(f.model.exportFile().fileName(), QString("lumaphone-glossary.yaml"));
        QVERIFY(f.model.exportFile().isLocalFile());
        f.store.add(translated("fox", "狐狸"));
        const QString path = f.folder.filePath("out.yaml");
        f.model.exportYAML(QUrl::fromLocalFile(path));
        QCOMPARE(f.model.notice(), QString("已匯出到「%1」。").arg(path));
        f.model.remove(0);
        QVERIFY(f.import({QUrl::fromLocalFile(path)}));
        QCOMPARE(lines(f.store.terms()), QStringList("fox|狐狸|translate||true|false"));
    }

    void anExportThatFailsSaysWhy()
    {
        Fixture f;
        f.model.exportYAML(QUrl::fromLocalFile(f.folder.filePath("gone/out.yaml")));
        QVERIFY(f.model.importError().contains("out.yaml"));
    }

    void whatTheStoreCannotReadIsShown()
    {
        QTemporaryDir folder;
        replaceFile(folder.filePath("glossary.json"), "{", Durability::renamed);
        LumaphoneGlossaryStore store(folder.path(), {});
        GlossarySettingsModel model(store, MainQueue::create());
        QVERIFY(!model.storeError().isEmpty());
        QSignalSpy changes(&model, &GlossarySettingsModel::storeErrorChanged);
        store.add(preserved("a"));
        QCOMPARE(model.storeError(), QString());
        QCOMPARE(changes.count(), 1);
    }

    void theFileIsShownInTheFileViewer()
    {
        Fixture f;
        f.model.openGlossaryFolder();
        QCOMPARE(f.revealed, QStringList(f.store.glossaryPath()));
        QCOMPARE(f.model.importError(), QString());
        f.viewerFailure = "no file manager";
        f.model.openGlossaryFolder();
        QCOMPARE(f.model.importError(), "no file manager");
    }
};

LUMAPHONE_TEST(GlossarySettingsModelTest)

} // namespace glossarysettingsmodeltest

#include "GlossarySettingsModelTest.moc"
