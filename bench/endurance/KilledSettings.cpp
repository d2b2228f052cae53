#include "base/AtomicFile.h"
#include "base/Json.h"
#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "platform/desktop/JsonDefaultsStore.h"
#include "storage/LumaphoneSettings.h"
#include "support/MemoryKeychain.h"

namespace lumaphone::bench {

namespace {

const auto fontSize = QStringLiteral("font size");
const auto opacity = QStringLiteral("opacity");
const auto baseURL = QStringLiteral("base URL");
const auto model = QStringLiteral("model");

const auto fileName = QStringLiteral("settings.json");

QString exact(double value)
{
    return QString::number(value, 'g', 17);
}

/// The settings of one process.
struct OpenSettings
{
    JsonDefaultsStore defaults;
    test::MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};

    explicit OpenSettings(const QString &path)
        : defaults(path)
    {
    }
};

class KilledSettings final : public KilledStore
{
public:
    explicit KilledSettings(const QString &folder)
        : m_folder(folder)
    {
    }

    StoreContents contents() const override
    {
        requireReadable();
        const OpenSettings open(path());
        return {{fontSize, exact(open.settings.captionFontSize())},
            {opacity, exact(open.settings.captionOpacity())}, {baseURL, open.settings.providerBaseURL()},
            {model, open.settings.providerModel()}};
    }

    StoreChange plan(const StoreContents &held, int number, std::mt19937 &chance) const override
    {
        return {{anyOf(held, chance), QString::number(number)}};
    }

    void make(const StoreChange &change) override
    {
        if (!m_open) {
            m_open = std::make_unique<OpenSettings>(path());
        }
        const QString value = change.value(nameIn(change)).value();
        LumaphoneSettings &settings = m_open->settings;
        if (const QString name = nameIn(change); name == fontSize) {
            settings.setCaptionFontSize(value.toDouble());
        } else if (name == opacity) {
            settings.setCaptionOpacity(value.toDouble());
        } else if (name == baseURL) {
            settings.setProviderBaseURL(value);
        } else {
            settings.setProviderModel(value);
        }
    }

    QList<StoreChange> touchAll(const StoreContents & /*held*/, int number) const override
    {
        return {{{model, QString::number(number)}}};
    }

    QStringList strays() const override
    {
        return unexpectedEntries(m_folder, [](const QString &name) {
            return name == fileName || name == fileName + QStringLiteral(".lock");
        });
    }

private:
    QString path() const { return m_folder + QLatin1Char('/') + fileName; }

    /// The settings themselves take an unreadable file for an empty one.
    void requireReadable() const
    {
        try {
            if (const auto bytes = readFile(path()); bytes && !json::parse(*bytes).is_object()) {
                throw BenchError(QStringLiteral("%1 is no object.").arg(path()));
            }
        } catch (const LocalizedError &error) {
            throw BenchError(error.errorDescription());
        }
    }

    QString m_folder;
    std::unique_ptr<OpenSettings> m_open;
};

} // namespace

std::unique_ptr<KilledStore> killedSettings(const QString &folder)
{
    return std::make_unique<KilledSettings>(folder);
}

} // namespace lumaphone::bench
