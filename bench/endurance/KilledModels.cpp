#include "base/MainQueue.h"
#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "models/ModelInstaller.h"
#include "models/ModelStore.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"

#include <QDir>
#include <QFile>

namespace lumaphone::bench {

namespace {

const QStringList models {QStringLiteral("small"), QStringLiteral("middle"), QStringLiteral("large")};
const auto installed = QStringLiteral("installed");

/// Two files for each.
QByteArray bytesOf(const QString &model, const QString &role)
{
    const auto index = static_cast<unsigned>(models.indexOf(model));
    return test::noise(20'000 << (2 * index), 2 * index + (role == QLatin1String("model") ? 0 : 1));
}

QString fileOf(const QString &model, const QString &role)
{
    return model + QLatin1Char('.') + role;
}

ModelCatalogue smallCatalogue()
{
    QStringList entries;
    for (const QString &model : models) {
        QStringList downloads;
        for (const auto &role : {QStringLiteral("model"), QStringLiteral("tokens")}) {
            const QString name = fileOf(model, role);
            downloads.append(
                QStringLiteral(R"({"url": "http://localhost/%1", "compression": "none", "files": [%2]})")
                    .arg(name, test::listedFile(role, name, bytesOf(model, role))));
        }
        entries.append(QStringLiteral(R"({"id": "%1", "kind": "speech", "title": "%1", "languages": ["ja"],
            "licence": {"text": "free", "mustBeAccepted": false}, "downloads": [%2]})")
                           .arg(model, downloads.join(QLatin1Char(','))));
    }
    const QString listing = QStringLiteral(R"({"models": [%1]})").arg(entries.join(QLatin1Char(',')));
    return ModelCatalogue::fromJson(listing.toUtf8(), QStringLiteral("kill trials"));
}

/// Installed models.
class KilledModels final : public KilledStore
{
public:
    /// What is installed lies beside what it is installed from.
    explicit KilledModels(const QString &folder)
        : m_sources(folder + QStringLiteral("/sources"))
        , m_store(folder + QStringLiteral("/Models"), smallCatalogue())
        , m_installer(m_store, m_mainQueue)
    {
        if (QDir().mkpath(m_sources) && QDir(m_sources).isEmpty()) {
            writeSources();
        }
    }

    StoreContents contents() const override
    {
        StoreContents found;
        try {
            for (const QString &model : models) {
                const ModelEntry &entry = m_store.catalogue().entry(model);
                const ModelState state = m_store.state(entry);
                if (state == ModelState::damaged) {
                    throw BenchError(QStringLiteral("The model \"%1\" is damaged.").arg(model));
                }
                if (state == ModelState::installed) {
                    m_store.verify(entry);
                    found.insert(model, installed);
                }
            }
        } catch (const LocalizedError &error) {
            throw BenchError(error.errorDescription());
        }
        return found;
    }

    StoreChange plan(const StoreContents &held, int /*number*/, std::mt19937 &chance) const override
    {
        const QString &model = models.at(oneOf(0, static_cast<int>(models.size()) - 1, chance));
        const bool isRemoval = held.contains(model) && oneOf(0, 1, chance) == 0;
        return {{model, isRemoval ? std::nullopt : std::optional(installed)}};
    }

    void make(const StoreChange &change) override
    {
        const QString model = nameIn(change);
        try {
            if (change.value(nameIn(change))) {
                test::waitFor(m_installer.installFrom(m_sources, model, LicenceConsent::none));
            } else {
                m_store.remove(m_store.catalogue().entry(model));
            }
        } catch (const LocalizedError &error) {
            throw BenchError(error.errorDescription());
        }
    }

    QList<StoreChange> touchAll(const StoreContents & /*held*/, int /*number*/) const override
    {
        QList<StoreChange> changes;
        for (const QString &model : models) {
            changes.append(StoreChange {{model, std::nullopt}});
            changes.append(StoreChange {{model, installed}});
        }
        return changes;
    }

    QStringList strays() const override
    {
        return unexpectedEntries(m_store.folder(), [](const QString &name) {
            for (const QString &model : models) {
                if (name == QStringLiteral(".%1.lock").arg(model) || name == model
                    || name == model + QStringLiteral("/installed.json")
                    || name == model + QLatin1Char('/') + fileOf(model, QStringLiteral("model"))
                    || name == model + QLatin1Char('/') + fileOf(model, QStringLiteral("tokens"))) {
                    return true;
                }
            }
            return false;
        });
    }

private:
    void writeSources() const
    {
        for (const QString &model : models) {
            for (const auto &role : {QStringLiteral("model"), QStringLiteral("tokens")}) {
                QFile file(m_sources + QLatin1Char('/') + fileOf(model, role));
                const QByteArray bytes = bytesOf(model, role);
                if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
                    throw BenchError(file.errorString());
                }
            }
        }
    }

    QString m_sources;
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    ModelStore m_store;
    ModelInstaller m_installer;
};

} // namespace

std::unique_ptr<KilledStore> killedModels(const QString &folder)
{
    return std::make_unique<KilledModels>(folder);
}

} // namespace lumaphone::bench
