#include "app/models/ModelTexts.h"

#include "app/models/DownloadPace.h"
#include "models/ModelCatalogue.h"
#include "models/ModelInstaller.h"

#include <QLocale>

#include <cmath>

namespace lumaphone {

namespace {

QString formatted(qint64 bytes, int decimals)
{
    return QLocale(QLocale::Chinese, QLocale::Taiwan)
        .formattedDataSize(bytes, decimals, QLocale::DataSizeSIFormat);
}

} // namespace

QString dataSize(qint64 bytes)
{
    return formatted(bytes, 0);
}

QString timeLeftText(std::chrono::seconds left)
{
    constexpr std::chrono::hours hour {1};
    if (left < std::chrono::minutes(1)) {
        return QStringLiteral("剩下不到 1 分鐘");
    }
    return left < hour
        ? QStringLiteral("剩下約 %1 分鐘").arg(std::chrono::ceil<std::chrono::minutes>(left).count())
        : QStringLiteral("剩下約 %1 小時").arg(std::chrono::ceil<std::chrono::hours>(left).count());
}

QString downloadText(const ModelProgress &progress, const DownloadPace &pace, qint64 later)
{
    QString text = QStringLiteral("下載中... %1").arg(formatted(progress.done, 1));
    if (progress.total) {
        text += QStringLiteral(" / %1").arg(formatted(*progress.total, 1));
    }
    if (const auto rate = pace.bytesPerSecond()) {
        text += QStringLiteral("，每秒 %1").arg(formatted(std::llround(*rate), 1));
    }
    if (!progress.total) {
        return text;
    }
    if (const auto left = pace.timeFor(*progress.total - progress.done + later)) {
        text += QStringLiteral("，") + timeLeftText(*left);
    }
    return text;
}

QString licenceText(const QList<const ModelEntry *> &entries)
{
    const QString own = entries.constFirst()->licence.text;
    QStringList texts {own};
    for (const ModelEntry *entry : entries) {
        if (entry->licence.text != own) {
            texts.append(QStringLiteral("%1：%2").arg(entry->title, entry->licence.text));
        }
    }
    return texts.join(QLatin1Char('\n'));
}

} // namespace lumaphone
