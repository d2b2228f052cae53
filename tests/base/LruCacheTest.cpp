#include "base/LruCache.h"

#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

#include <memory>
#include <string>

namespace lrucachetest {

using lumaphone::LruCache;

class LruCacheTest : public QObject
{
    Q_OBJECT

private slots:
    void anUnknownKeyHasNoValue()
    {
        LruCache<std::string, int> cache(2);
        QVERIFY(!cache.find("a"));
        QCOMPARE(cache.size(), std::size_t(0));
    }

    void theEntryUnusedForLongestIsEvicted()
    {
        LruCache<std::string, int> cache(2);
        cache.insert("a", 1);
        cache.insert("b", 2);
        cache.insert("c", 3);
        QCOMPARE(cache.size(), std::size_t(2));
        QVERIFY(!cache.find("a"));
        QCOMPARE(cache.find("b"), std::optional(2));
        QCOMPARE(cache.find("c"), std::optional(3));
    }

    void aHitIsAUse()
    {
        LruCache<std::string, int> cache(2);
        cache.insert("a", 1);
        cache.insert("b", 2);
        QCOMPARE(cache.find("a"), std::optional(1));
        cache.insert("c", 3);
        QVERIFY(cache.find("a"));
        QVERIFY(!cache.find("b"));
    }

    void anInsertionUnderAKnownKeyReplacesItsValueAndIsAUse()
    {
        LruCache<std::string, int> cache(2);
        cache.insert("a", 1);
        cache.insert("b", 2);
        cache.insert("a", 10);
        QCOMPARE(cache.size(), std::size_t(2));
        cache.insert("c", 3);
        QCOMPARE(cache.find("a"), std::optional(10));
        QVERIFY(!cache.find("b"));
    }

    void aMissChangesNothing()
    {
        LruCache<std::string, int> cache(2);
        cache.insert("a", 1);
        cache.insert("b", 2);
        QVERIFY(!cache.find("x"));
        cache.insert("c", 3);
        QVERIFY(!cache.find("a"));
        QVERIFY(cache.find("b"));
    }

    void aCacheWithoutCapacityKeepsNothing()
    {
        LruCache<std::string, int> cache(0);
        cache.insert("a", 1);
        QCOMPARE(cache.size(), std::size_t(0));
        QVERIFY(!cache.find("a"));
    }

    void evictionReleasesTheValue()
    {
        LruCache<int, std::shared_ptr<int>> cache(1);
        const auto value = std::make_shared<int>(7);
        cache.insert(1, value);
        QCOMPARE(value.use_count(), 2L);
        cache.insert(2, nullptr);
        QCOMPARE(value.use_count(), 1L);
    }

    void keysUsedInAnyOrderLeaveInTheOrderOfTheirLastUse()
    {
        LruCache<int, int> cache(100);
        for (int key = 0; key < 100; ++key) {
            cache.insert(key, key);
        }
        for (int key = 98; key >= 0; key -= 2) {
            QVERIFY(cache.find(key));
        }
        // Unused since their insertion: 1, 3, ... 99; then, by last use: 98, 96, ... 0.
        for (int i = 0; i < 50; ++i) {
            cache.insert(1000 + i, i);
        }
        for (int key = 99; key >= 1; key -= 2) {
            QVERIFY(!cache.find(key));
        }
        cache.insert(2000, 0);
        QVERIFY(!cache.find(98));
        QVERIFY(cache.find(96));
    }
};

LUMAPHONE_TEST(LruCacheTest)

} // namespace lrucachetest

#include "LruCacheTest.moc"
