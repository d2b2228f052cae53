#pragma once

#include <QList>
#include <QString>

#include <chrono>

namespace lumaphone {

class DownloadPace;
struct ModelEntry;
struct ModelProgress;

/// Such as "164 MB".
QString dataSize(qint64 bytes);
/// Such as "剩下約 2 分鐘".
QString timeLeftText(std::chrono::seconds left);
/// How far a download is, as far as that is known, such as "下載中... 12.3 MB / 164.0 MB，每秒 2.4 MB，剩下約
/// 2 分鐘". `later`: bytes that are to be fetched after it.
QString downloadText(const ModelProgress &progress, const DownloadPace &pace, qint64 later);
/// The terms of models that are installed together.
QString licenceText(const QList<const ModelEntry *> &entries);

} // namespace lumaphone
