#include "base/LocalizedError.h"

namespace lumaphone {

LocalizedError::LocalizedError(const QString &description)
    : m_description(description)
    , m_utf8(description.toUtf8())
{
}

QString localizedDescription(const std::exception &error)
{
    if (const auto *localized = dynamic_cast<const LocalizedError *>(&error)) {
        return localized->errorDescription();
    }
    return QString::fromUtf8(error.what());
}

QString localizedDescription(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &exception) {
        return localizedDescription(exception);
    } catch (...) {
        return QStringLiteral("發生未知的錯誤。");
    }
}

} // namespace lumaphone
