#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "platform/desktop/SystemClock.h"
#include "support/LibraryOnDisk.h"

#include <QSet>

#include <algorithm>

namespace lumaphone::bench {

namespace {

constexpr int mostRecords = 40;

/// The library of one process.
struct OpenLibrary : test::LibraryOnDisk<SystemClock>
{
    explicit OpenLibrary(const QString &root)
        : LibraryOnDisk(root)
    {
        if (store.lastErrorMessage()) {
            throw BenchError(*store.lastErrorMessage());
        }
    }
};

const QSet<QString> filesOfASession {QStringLiteral("metadata.json"), QStringLiteral("lines.json"),
    QStringLiteral("source.txt"), QStringLiteral("translation.txt"), QStringLiteral("bilingual.txt")};

/// Transcripts of one line, by their identities.
class KilledLibrary final : public KilledStore
{
public:
    explicit KilledLibrary(const QString &folder)
        : m_folder(folder)
    {
    }

    StoreContents contents() const override
    {
        OpenLibrary library(m_folder);
        StoreContents found;
        try {
            const auto records = library.store.records();
            for (const TranscriptRecordMetadata &record : records) {
                const TranscriptDocument document = library.store.loadRecord(record.id);
                if (document.lines.size() != 1) {
                    throw BenchError(QStringLiteral("A transcript has not got its line."));
                }
                found.insert(record.id.toString(), document.lines.first().sourceText);
            }
        } catch (const LocalizedError &error) {
            throw BenchError(error.errorDescription());
        }
        return found;
    }

    StoreChange plan(const StoreContents &held, int number, std::mt19937 &chance) const override
    {
        const auto text = QStringLiteral("sentence %1").arg(number);
        const int kind = held.isEmpty() ? 0 : oneOf(held.size() < mostRecords ? 0 : 2, 3, chance);
        if (kind <= 1) {
            return {{QUuid::createUuid().toString(), text}};
        }
        const QString name = anyOf(held, chance);
        return {{name, kind == 2 ? std::optional(text) : std::nullopt}};
    }

    void make(const StoreChange &change) override
    {
        if (!m_library) {
            m_library = std::make_unique<OpenLibrary>(m_folder);
        }
        try {
            make(m_library->store, QUuid(nameIn(change)), change.value(nameIn(change)));
        } catch (const LocalizedError &error) {
            throw BenchError(error.errorDescription());
        }
    }

    QList<StoreChange> touchAll(const StoreContents &held, int number) const override
    {
        QList<StoreChange> changes;
        for (const QString &name : held.keys()) {
            changes.append(StoreChange {{name, QStringLiteral("sentence %1").arg(number)}});
        }
        return changes;
    }

    QStringList strays() const override
    {
        const OpenLibrary library(m_folder);
        QSet<QString> sessions;
        for (const TranscriptRecordMetadata &record : library.store.records()) {
            sessions.insert(record.folderName);
        }
        return unexpectedEntries(m_folder, [&sessions](const QString &name) {
            const QStringList parts = name.split(QLatin1Char('/'));
            if (parts.first() != QLatin1String("sessions")) {
                return name == QLatin1String("index.json") || name == QLatin1String("index.json.lock");
            }
            return parts.size() == 1
                || (sessions.contains(parts[1])
                    && (parts.size() == 2 || (parts.size() == 3 && filesOfASession.contains(parts[2]))));
        });
    }

private:
    void make(TranscriptLibraryStore &store, const QUuid &id, const std::optional<QString> &text) const
    {
        const auto &records = store.records();
        const bool isThere = std::any_of(
            records.begin(), records.end(), [&id](const auto &record) { return record.id == id; });
        if (!isThere) {
            LiveTranscript live;
            live.lines = {{QUuid::createUuid(), text.value(), QString(), AppleSystemSpeechLanguage::english,
                m_library->clock.now(), true}};
            live.savedTranscriptID = id;
            store.save(live, m_library->settings);
            return;
        }
        TranscriptDocument document = store.loadRecord(id);
        if (!text) {
            store.remove(document.metadata);
            return;
        }
        document.metadata.title = *text;
        document.lines.first().sourceText = *text;
        store.update(document);
    }

    QString m_folder;
    std::unique_ptr<OpenLibrary> m_library;
};

} // namespace

std::unique_ptr<KilledStore> killedLibrary(const QString &folder)
{
    return std::make_unique<KilledLibrary>(folder);
}

} // namespace lumaphone::bench
