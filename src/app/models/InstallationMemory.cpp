#include "app/models/InstallationMemory.h"

#include "platform/DefaultsStore.h"
#include "storage/SettingKeys.h"

#include <QStringList>

namespace lumaphone {

namespace {

/// Behind the name of a model whose licence has been accepted.
const QLatin1Char acceptance('!');

} // namespace

QList<InstallationMemory::Installation> InstallationMemory::installations() const
{
    QList<Installation> installations;
    if (!m_store) {
        return installations;
    }
    const QStringList names = m_store->string(settingkeys::installing)
                                  .value_or(QString())
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &name : names) {
        const bool isAccepted = name.endsWith(acceptance);
        installations.append({isAccepted ? name.chopped(1) : name, isAccepted});
    }
    return installations;
}

void InstallationMemory::begin(const Installation &installation)
{
    QList<Installation> all = installations();
    all.removeIf([&installation](const Installation &known) { return known.id == installation.id; });
    all.append(installation);
    write(all);
}

void InstallationMemory::end(const QString &id)
{
    QList<Installation> all = installations();
    if (all.removeIf([&id](const Installation &known) { return known.id == id; }) > 0) {
        write(all);
    }
}

void InstallationMemory::write(const QList<Installation> &installations)
{
    if (!m_store) {
        return;
    }
    QStringList names;
    for (const Installation &installation : installations) {
        names.append(installation.acceptsLicence ? installation.id + acceptance : installation.id);
    }
    if (names.isEmpty()) {
        m_store->removeObject(settingkeys::installing);
    } else {
        m_store->setObject(settingkeys::installing, names.join(QLatin1Char(' ')));
    }
}

} // namespace lumaphone
