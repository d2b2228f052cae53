#include "app/OffscreenTest.h"
#include "app/QmlEngineSetup.h"

#include <QColor>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <cmath>
#include <memory>

namespace themetest {

using namespace lumaphone;

namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Relative luminance as the guidelines for accessible content define it.
double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

} // namespace

class ThemeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setUpQmlEngine(m_engine);
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport Lumaphone.Controls\n"
                          "QtObject { property bool isDark\n onIsDarkChanged: Theme.isDark = isDark\n"
                          "function of(name: string): color { return Theme[name] } }",
            QUrl());
        m_theme.reset(component.create());
        QVERIFY2(m_theme, qPrintable(component.errorString()));
    }

    void theMeasureIsRight()
    {
        QVERIFY(std::abs(contrast(Qt::black, Qt::white) - 21) < 0.01);
        QVERIFY(std::abs(contrast(QColor("#767676"), Qt::white) - 4.54) < 0.01);
    }

    void textsAreLegible_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("surface");
        for (const char *surface : {"window", "surface", "raised", "field", "well"}) {
            for (const char *text : {"text", "textSecondary", "textSoft"}) {
                QTest::addRow("%s on %s", text, surface) << QString(text) << QString(surface);
            }
        }
        const std::pair<const char *, const char *> pairs[] {
            {"accentContrast", "accent"},
            {"accentContrast", "accentHovered"},
            {"accentContrast", "accentPressed"},
            {"accentText", "accentWell"},
            {"accentText", "surface"},
            {"success", "successWell"},
            {"warning", "warningWell"},
            {"danger", "dangerWell"},
            {"danger", "surface"},
            {"text", "selection"},
            {"text", "found"},
            {"text", "foundHere"},
        };
        for (const auto &[text, surface] : pairs) {
            QTest::addRow("%s on %s", text, surface) << QString(text) << QString(surface);
        }
    }

    void textsAreLegible()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, surface);
        for (const bool isDark : {false, true}) {
            m_theme->setProperty("isDark", !isDark);
            m_theme->setProperty("isDark", isDark);
            const double ratio = contrast(color(text), color(surface));
            QVERIFY2(ratio >= 4.5,
                qPrintable(QStringLiteral("%1:1 in %2").arg(ratio).arg(isDark ? "the dark" : "the light")));
        }
    }

private:
    QColor color(const QString &name) const
    {
        QColor found;
        QMetaObject::invokeMethod(m_theme.get(), "of", Q_RETURN_ARG(QColor, found), Q_ARG(QString, name));
        return found;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_theme;
};

LUMAPHONE_OFFSCREEN_TEST(ThemeTest)

} // namespace themetest

#include "ThemeTest.moc"
