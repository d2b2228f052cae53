#include "translation/TransportError.h"

namespace lumaphone {

namespace {

/// Without what may be secret: user, password and query.
QString forPeople(const QUrl &address)
{
    return address.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment)
        .toDisplayString();
}

} // namespace

TransportError::TransportError(Reason reason, const QString &description)
    : PlatformError(description)
    , m_reason(reason)
{
}

TransportError TransportError::cancelled()
{
    return {Reason::cancelled, QStringLiteral("翻譯要求已取消。")};
}

TransportError TransportError::timedOut(const QUrl &address, std::chrono::milliseconds timeout)
{
    const std::chrono::duration<double> seconds = timeout;
    return {Reason::timedOut,
        QStringLiteral("連線逾時：%1 在 %2 秒內沒有完整回應。")
            .arg(forPeople(address), QString::number(seconds.count()))};
}

TransportError TransportError::responseTooLarge(const QUrl &address, qint64 maximumBytes)
{
    return {Reason::responseTooLarge,
        QStringLiteral("%1 的回應超過 %2 KB，不像是翻譯結果，已停止讀取。")
            .arg(forPeople(address), QString::number(maximumBytes / 1024))};
}

TransportError TransportError::unsupportedAddress(const QUrl &address)
{
    return {Reason::unsupportedAddress,
        QStringLiteral("無法連線到「%1」：Base URL 請以 http:// 或 https:// 開頭。").arg(forPeople(address))};
}

TransportError TransportError::nameInAddress(const QUrl &address)
{
    return {Reason::nameInAddress,
        QStringLiteral("Base URL「%1」裡不能放帳號或密碼，請改用 API 金鑰。").arg(forPeople(address))};
}

TransportError TransportError::unusableKey()
{
    return {Reason::unusableKey, QStringLiteral("API 金鑰含有換行或控制字元，無法傳送，請重新輸入。")};
}

TransportError TransportError::closedUnanswered(const QUrl &address)
{
    return {Reason::closedUnanswered, QStringLiteral("%1 沒有回應就關閉了連線。").arg(forPeople(address))};
}

TransportError TransportError::connectionFailed(const QString &description)
{
    return {Reason::connectionFailed, description};
}

} // namespace lumaphone
