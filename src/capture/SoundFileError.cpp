#include "capture/SoundFileError.h"

namespace lumaphone {

namespace {

QString description(SoundFileError::Case errorCase, const QString &path, const QString &detail)
{
    using enum SoundFileError::Case;
    switch (errorCase) {
    case notFound:
        return QStringLiteral("找不到聲音檔「%1」。").arg(path);
    case unreadable:
        return QStringLiteral("無法讀取聲音檔「%1」：%2").arg(path, detail);
    case notSound:
        return QStringLiteral("「%1」不是可以辨識的聲音檔：%2").arg(path, detail);
    case unsupportedFormat:
        return QStringLiteral("不支援聲音檔「%1」的格式：%2").arg(path, detail);
    case empty:
        return QStringLiteral("聲音檔「%1」裡沒有聲音。").arg(path);
    }
    Q_UNREACHABLE();
}

} // namespace

SoundFileError::SoundFileError(Case errorCase, const QString &path, const QString &detail)
    : LocalizedError(description(errorCase, path, detail))
    , m_case(errorCase)
{
}

} // namespace lumaphone
