#include "photographs/PictureComparison.h"

#include "app/OffscreenTest.h"
#include "photographs/KeptPictures.h"

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

namespace picturecomparisontest {

using namespace lumaphone::test;

namespace {

/// What a photograph shows, as far as a test changes it.
struct Drawing
{
    QPoint button {520, 16};
    QColor buttonColor {"#4356dd"};
    QColor textColor {"#191a20"};
    QPoint textOffset {};
    QFont::HintingPreference hinting = QFont::PreferNoHinting;
    QSize size {640, 400};
};

QImage photograph(const Drawing &drawing)
{
    QImage picture(drawing.size, QImage::Format_RGB32);
    picture.fill(QColor("#f3f3f6"));
    QPainter painter(&picture);
    painter.fillRect(24, 72, 592, 304, Qt::white);
    painter.setPen(Qt::NoPen);
    painter.setBrush(drawing.buttonColor);
    painter.drawRoundedRect(QRect(drawing.button, QSize(96, 36)), 10, 10);
    QFont font;
    font.setPixelSize(18);
    font.setHintingPreference(drawing.hinting);
    painter.setFont(font);
    painter.setPen(drawing.textColor);
    for (int line = 0; line < 9; ++line) {
        for (int column = 0; column < 6; ++column) {
            painter.drawText(QPoint(48 + 90 * column, 112 + 28 * line) + drawing.textOffset, "captions");
        }
    }
    return picture;
}

} // namespace

/// What is noticed of a photograph that differs from the kept picture, and what is not.
class PictureComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyWhatWasMeantToBeSeenIsNoticed_data()
    {
        QTest::addColumn<Drawing>("now");
        QTest::addColumn<bool>("isNoticed");
        QTest::newRow("nothing has changed") << Drawing {} << false;
        QTest::newRow("another hinting") << Drawing {.hinting = QFont::PreferFullHinting} << false;
        QTest::newRow("text beside its place by a pixel") << Drawing {.textOffset = {1, 1}} << false;
        QTest::newRow("a button moved by 12 pixels") << Drawing {.button = {508, 16}} << true;
        QTest::newRow("a button of another colour") << Drawing {.buttonColor = "#2f8f5b"} << true;
        QTest::newRow("a button of another shade") << Drawing {.buttonColor = "#6a7af0"} << true;
        QTest::newRow("text that cannot be read") << Drawing {.textColor = "#d0d0d8"} << true;
        QTest::newRow("text that is gone") << Drawing {.textColor = Qt::white} << true;
        QTest::newRow("text moved by 12 pixels") << Drawing {.textOffset = {0, 12}} << true;
        QTest::newRow("another size") << Drawing {.size = {640, 360}} << true;
    }
    void onlyWhatWasMeantToBeSeenIsNoticed()
    {
        QFETCH(const Drawing, now);
        QFETCH(const bool, isNoticed);
        const PictureDifference difference = differenceOf(keptPicture(photograph({})), photograph(now));
        QVERIFY2(difference.isNone() != isNoticed, qPrintable(QString::number(difference.greatest)));
    }

    void theChangeIsNamedShownAndTakenOver()
    {
        QTemporaryDir kept;
        QTemporaryDir photographs;
        QFile list(kept.filePath("chosen.txt"));
        QVERIFY(list.open(QIODevice::WriteOnly));
        list.write("live window\nlive other\n");
        list.close();
        const auto take = [&](const QString &name, const Drawing &drawing) {
            QVERIFY(photograph(drawing).save(photographs.filePath(name + ".png")));
        };
        take("window", {});
        take("other", {});
        const KeptPictures pictures(kept.path());
        QVERIFY(pictures.hasSubject("live"));
        QVERIFY(!pictures.hasSubject("library"));
        QCOMPARE(pictures.changes(photographs.path()).size(), 2); // none is kept yet
        pictures.renew(photographs.path());
        QCOMPARE(pictures.changes(photographs.path()), QStringList());

        take("window", {.button = {508, 16}});
        const QStringList changes = pictures.changes(photographs.path());
        QCOMPARE(changes.size(), 1);
        QVERIFY2(changes[0].startsWith("window: "), qPrintable(changes[0]));
        QVERIFY(QFile::exists(photographs.filePath("window-changed.png")));
        pictures.renew(photographs.path());
        QCOMPARE(pictures.changes(photographs.path()), QStringList());
        QFile::remove(photographs.filePath("other.png"));
        QVERIFY_EXCEPTION_THROWN(pictures.changes(photographs.path()), std::runtime_error);
    }
};

LUMAPHONE_OFFSCREEN_TEST(PictureComparisonTest)

} // namespace picturecomparisontest

#include "PictureComparisonTest.moc"
