#include "bench/endurance/KilledStore.h"

#include "bench/speech/Chance.h"

#include <QDir>
#include <QDirIterator>

namespace lumaphone::bench {

const std::vector<KillableStore> &killableStores()
{
    static const std::vector<KillableStore> all {{QStringLiteral("draft"), &killedDraft},
        {QStringLiteral("library"), &killedLibrary}, {QStringLiteral("glossary"), &killedGlossary},
        {QStringLiteral("settings"), &killedSettings}, {QStringLiteral("models"), &killedModels}};
    return all;
}

QStringList unexpectedEntries(const QString &folder, const std::function<bool(const QString &)> &expected)
{
    QStringList unexpected;
    const QDir root(folder);
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString name = root.relativeFilePath(entries.next());
        if (!expected(name)) {
            unexpected.append(name);
        }
    }
    return unexpected;
}

QString nameIn(const StoreChange &change)
{
    return change.keys().value(0);
}

QString anyOf(const StoreContents &held, std::mt19937 &chance)
{
    return held.keys().value(oneOf(0, static_cast<int>(held.size()) - 1, chance));
}

} // namespace lumaphone::bench
