#pragma once

#include <QList>
#include <QString>

namespace lumaphone {

class DefaultsStore;

/// Which installations go on when the program starts again: those that the user has begun and not ended.
class InstallationMemory
{
public:
    struct Installation
    {
        QString id; ///< of the model that it is about; without blanks
        bool acceptsLicence = false;

        bool operator==(const Installation &) const = default;
    };

    /// `store` outlives the memory; without one, nothing is remembered.
    explicit InstallationMemory(DefaultsStore *store = nullptr)
        : m_store(store)
    {
    }

    /// In the order in which they were begun.
    QList<Installation> installations() const;
    void begin(const Installation &installation);
    void end(const QString &id);

private:
    void write(const QList<Installation> &installations);

    DefaultsStore *m_store;
};

} // namespace lumaphone
