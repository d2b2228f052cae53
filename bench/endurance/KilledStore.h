#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <vector>

namespace lumaphone::bench {

/// What a store holds for the user, by names of the trial's own.
using StoreContents = QMap<QString, QString>;

/// What a change makes of some names; none: it is gone.
using StoreChange = QMap<QString, std::optional<QString>>;

/// One of the program's stores in a folder, as a trial changes and reads it. Changes are made by another
/// process than the one that reads.
class KilledStore
{
public:
    virtual ~KilledStore() = default;

    /// What a program that starts now finds. Throws BenchError if something cannot be read.
    virtual StoreContents contents() const = 0;
    /// A change by chance of what the store holds. `number` is another one for each change of all trials.
    virtual StoreChange plan(const StoreContents &held, int number, std::mt19937 &chance) const = 0;
    /// Returns when the store says that it is saved. Throws BenchError if it says something else.
    virtual void make(const StoreChange &change) = 0;
    /// Changes, one after the other, that touch every file the store has.
    virtual QList<StoreChange> touchAll(const StoreContents &held, int number) const = 0;
    /// Of the files and folders in the store's folder, relative to it, those that nobody needs.
    virtual QStringList strays() const = 0;
};

struct KillableStore
{
    QString name; ///< for the command line
    std::function<std::unique_ptr<KilledStore>(const QString &folder)> open;
};

/// Draft, library, glossary, settings, models.
const std::vector<KillableStore> &killableStores();

std::unique_ptr<KilledStore> killedDraft(const QString &folder);
std::unique_ptr<KilledStore> killedLibrary(const QString &folder);
std::unique_ptr<KilledStore> killedGlossary(const QString &folder);
std::unique_ptr<KilledStore> killedSettings(const QString &folder);
std::unique_ptr<KilledStore> killedModels(const QString &folder);

/// The names below a folder, hidden ones among them, that are not `expected`.
QStringList unexpectedEntries(const QString &folder, const std::function<bool(const QString &)> &expected);

/// The first of the names that a change concerns.
QString nameIn(const StoreChange &change);
/// One of the names that are held.
QString anyOf(const StoreContents &held, std::mt19937 &chance);

} // namespace lumaphone::bench
