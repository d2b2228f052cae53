#include "app/OffscreenTest.h"
#include "app/QmlEngineSetup.h"

#include <QColor>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <algorithm>
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
                          "QtObject {\n"
                          "function set(name: string, value: var): void { Theme[name] = value }\n"
                          "function of(name: string): var { return Theme[name] } }",
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
            {"accentText", "window"},
            {"accentText", "raised"},
            {"accent", "surface"},
            {"text", "accentWell"},
            {"textSecondary", "accentWell"},
            {"text", "wellHovered"},
            {"text", "wellPressed"},
            {"textSecondary", "wellHovered"},
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
            set("isDark", isDark);
            for (const bool isHighContrast : {false, true}) {
                set("isHighContrast", isHighContrast);
                for (const QColor &accent : accents()) {
                    set("desktopAccent", accent);
                    const double ratio = contrast(color(text), color(surface));
                    QVERIFY2(ratio >= (isHighContrast ? 7 : 4.5),
                        qPrintable(QStringLiteral("%1:1 %2 %3 %4")
                                       .arg(ratio)
                                       .arg(isDark ? "dark" : "light", isHighContrast ? "high contrast" : "",
                                           accent.name(QColor::HexArgb))));
                }
            }
        }
    }

    void theDesktopsAccentKeepsItsHue()
    {
        set("isHighContrast", false);
        for (const bool isDark : {false, true}) {
            set("isDark", isDark);
            for (const QColor &accent : accents()) {
                set("desktopAccent", accent);
                if (accent.alpha() > 0 && accent.hslSaturation() > 40) {
                    const int turned = std::abs(color("accent").hslHue() - accent.hslHue());
                    QVERIFY2(std::min(turned, 360 - turned) <= 3, qPrintable(accent.name()));
                }
            }
        }
    }

    void anAccentThatIsLegibleStaysAsItIs()
    {
        set("isHighContrast", false);
        set("isDark", false);
        set("desktopAccent", QColor("#005f9e"));
        QCOMPARE(color("accent"), QColor("#005f9e"));
        set("isDark", true);
        set("desktopAccent", QColor("#9fd0ff"));
        QCOMPARE(color("accent"), QColor("#9fd0ff"));
    }

    void withoutADesktopsAccentTheProgramHasItsOwn()
    {
        set("isHighContrast", false);
        set("desktopAccent", QColor(Qt::transparent));
        set("isDark", false);
        QCOMPARE(color("accent"), QColor("#4356dd"));
        QCOMPARE(color("window"), QColor("#f3f3f6"));
        set("isDark", true);
        QCOMPARE(color("accent"), QColor("#8f9dff"));
        QCOMPARE(color("window"), QColor("#16171b"));
    }

    void nothingMovesForThoseWhoDoNotWantIt()
    {
        set("isMotionReduced", true);
        QCOMPARE(value("quick").toInt(), 0);
        set("isMotionReduced", false);
        QVERIFY(value("quick").toInt() > 0);
    }

private:
    /// None, the ones that desktops offer, and the worst there are.
    static QList<QColor> accents()
    {
        QList<QColor> accents {Qt::transparent};
        for (const char *name : {"#3584e4", "#2190a4", "#3a944a", "#c88800", "#ed5b00", "#e62d42", "#d56199",
                 "#9141ac", "#6f8396", "#3daee9", "#e93d58", "#000000", "#ffffff", "#ffff00", "#00ffff",
                 "#0000ff", "#00ff00", "#ff00ff", "#808080", "#7f7f00"}) {
            accents.append(QColor(QLatin1String(name)));
        }
        return accents;
    }
    void set(const char *name, const QVariant &value)
    {
        QMetaObject::invokeMethod(
            m_theme.get(), "set", Q_ARG(QString, QString::fromLatin1(name)), Q_ARG(QVariant, value));
    }
    QVariant value(const QString &name) const
    {
        QVariant found;
        QMetaObject::invokeMethod(m_theme.get(), "of", Q_RETURN_ARG(QVariant, found), Q_ARG(QString, name));
        return found;
    }
    QColor color(const QString &name) const { return value(name).value<QColor>(); }

    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_theme;
};

LUMAPHONE_OFFSCREEN_TEST(ThemeTest)

} // namespace themetest

#include "ThemeTest.moc"
