#include "app/inspector/FloatingCaptionSettingsModel.h"

#include "storage/LumaphoneSettings.h"

#include <QFontDatabase>
#include <QVariantMap>

#include <algorithm>
#include <cmath>

namespace lumaphone {

namespace {

QVariantMap captionChoice(const QString &value, const QString &title)
{
    return {{QStringLiteral("value"), value}, {QStringLiteral("title"), title}};
}

QString silenceTitle(double seconds)
{
    return seconds <= 0 ? QStringLiteral("一直顯示")
        : seconds == 60 ? QStringLiteral("1 分鐘後消失")
                        : QString::number(seconds) + QStringLiteral(" 秒後消失");
}

std::vector<ReadingLine> previewLines()
{
    const auto line = [](const QString &source, const QString &translation) {
        return ReadingLine {
            QUuid::createUuid(), source, rawValue(AppleSystemSpeechLanguage::japanese), translation, true};
    };
    return {line(QStringLiteral("おはようございます。今日は新しい企画について話します。"),
                QStringLiteral("早安。今天要來談新的企劃。")),
        line(QStringLiteral("まず来月の予定から確認しましょう。"),
            QStringLiteral("我們先從下個月的行程開始確認吧。")),
        line(QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？"),
            QStringLiteral("等一下，剛剛那個點子也太可以了吧？"))};
}

/// A slider's steps add up to 1.2000000000000002.
double roundedTo(int steps, double value)
{
    return std::round(value * steps) / steps;
}

} // namespace

FloatingCaptionSettingsModel::FloatingCaptionSettingsModel(LumaphoneSettings &settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_previewReader(settings, {})
{
    using Settings = LumaphoneSettings;
    using Self = FloatingCaptionSettingsModel;
    connect(&settings, &Settings::captionLinesChanged, this, &Self::lineCountChanged);
    connect(&settings, &Settings::captionOrderChanged, this, &Self::orderChanged);
    connect(&settings, &Settings::captionFontChanged, this, &Self::fontChanged);
    connect(&settings, &Settings::captionSilenceChanged, this, &Self::silenceChanged);
    connect(&settings, &Settings::captionLineSpacingChanged, this, &Self::lineSpacingChanged);
    connect(&settings, &Settings::captionLineWidthChanged, this, &Self::lineWidthChanged);
    m_previewReader.read(previewLines());
}

QVariantList FloatingCaptionSettingsModel::lineCounts() const
{
    QVariantList list {captionChoice(QStringLiteral("0"), QStringLiteral("關閉"))};
    for (int lines = 1; lines <= FloatingCaptionReader::mostLines; ++lines) {
        list.append(captionChoice(QString::number(lines), QStringLiteral("最新 %1 句").arg(lines)));
    }
    return list;
}

QVariantList FloatingCaptionSettingsModel::orders() const
{
    QVariantList list;
    for (const FloatingCaptionOrder order : allFloatingCaptionOrders) {
        list.append(captionChoice(rawValue(order), title(order)));
    }
    return list;
}

QVariantList FloatingCaptionSettingsModel::fonts() const
{
    QStringList families = QFontDatabase::families();
    families.removeIf([](const QString &family) { return QFontDatabase::isPrivateFamily(family); });
    if (!font().isEmpty() && !families.contains(font())) {
        families.prepend(font());
    }
    QVariantList list {captionChoice(QString(), QStringLiteral("依語言選擇"))};
    for (const QString &family : families) {
        list.append(captionChoice(family, family));
    }
    return list;
}

QVariantList FloatingCaptionSettingsModel::silences() const
{
    std::vector<double> seconds {0, 5, 10, 30, 60};
    const double chosen = std::max(0.0, m_settings.captionSilence());
    if (std::find(seconds.begin(), seconds.end(), chosen) == seconds.end()) {
        seconds.push_back(chosen);
    }
    QVariantList list;
    for (const double silence : seconds) {
        list.append(captionChoice(QString::number(silence), silenceTitle(silence)));
    }
    return list;
}

QString FloatingCaptionSettingsModel::lineCount() const
{
    return QString::number(std::clamp(int(m_settings.captionLines()), 0, FloatingCaptionReader::mostLines));
}

void FloatingCaptionSettingsModel::setLineCount(const QString &value)
{
    m_settings.setCaptionLines(value.toInt());
}

QString FloatingCaptionSettingsModel::order() const
{
    return rawValue(m_settings.captionOrder());
}

void FloatingCaptionSettingsModel::setOrder(const QString &value)
{
    if (const auto order = floatingCaptionOrder(value)) {
        m_settings.setCaptionOrder(*order);
    }
}

QString FloatingCaptionSettingsModel::font() const
{
    return m_settings.captionFont();
}

void FloatingCaptionSettingsModel::setFont(const QString &family)
{
    m_settings.setCaptionFont(family);
}

QString FloatingCaptionSettingsModel::silence() const
{
    return QString::number(std::max(0.0, m_settings.captionSilence()));
}

void FloatingCaptionSettingsModel::setSilence(const QString &value)
{
    m_settings.setCaptionSilence(value.toDouble());
}

double FloatingCaptionSettingsModel::lineSpacing() const
{
    return m_settings.captionLineSpacing();
}

void FloatingCaptionSettingsModel::setLineSpacing(double spacing)
{
    m_settings.setCaptionLineSpacing(roundedTo(10, spacing));
}

double FloatingCaptionSettingsModel::lineWidth() const
{
    return m_settings.captionLineWidth();
}

void FloatingCaptionSettingsModel::setLineWidth(double share)
{
    m_settings.setCaptionLineWidth(roundedTo(100, share));
}

QString FloatingCaptionSettingsModel::lineSpacingText() const
{
    return QString::number(lineSpacing(), 'f', 1) + QStringLiteral(" 倍");
}

QString FloatingCaptionSettingsModel::lineWidthText() const
{
    return QString::number(std::round(lineWidth() * 100)) + QLatin1Char('%');
}

} // namespace lumaphone
