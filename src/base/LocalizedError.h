#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace lumaphone {

/// Root of every error that a person may read. A subsystem derives one type with a closed enum of cases
/// and a single exhaustive switch from case to text.
class LocalizedError : public std::exception
{
public:
    explicit LocalizedError(const QString &description);

    /// The text shown to the user.
    const QString &errorDescription() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_description;
    QByteArray m_utf8;
};

/// An error of the operating system or of a library, shown with the text it carries.
class PlatformError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// The text of any exception: errorDescription() where there is one, else what().
QString localizedDescription(const std::exception &error);
/// The same for a captured exception; a fixed text for one that is not a std::exception.
QString localizedDescription(const std::exception_ptr &error);

} // namespace lumaphone
