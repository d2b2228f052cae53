#pragma once

#include "base/AtomicFile.h"
#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/CountedUuids.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/NotingFileViewer.h"
#include "support/VirtualClock.h"

#include <QLocale>
#include <QTemporaryDir>

#include <memory>

namespace lumaphone::test {

/// A transcript library in a folder of its own, whose sessions are saved a minute apart.
struct LibraryFixture
{
    QTemporaryDir folder;
    VirtualClock clock;
    NotingFileViewer viewer;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    QLocale locale {QLocale::English, QLocale::UnitedStates};
    TranscriptLibraryStore store {{
        .layout = TranscriptLibraryLayout::at(folder.filePath(QStringLiteral("library"))),
        .areRevisions = [](const QString &, const QString &) { return false; },
        .clock = clock,
        .fileViewer = viewer,
        .makeUuid = countedUuids(),
        .locale = locale,
    }};

    LiveTranscript live(const QStringList &sources) const
    {
        LiveTranscript live;
        uint number = 900;
        for (const QString &source : sources) {
            live.lines.append({countedUuid(++number), source, QStringLiteral("譯：") + source,
                AppleSystemSpeechLanguage::english, clock.now().addSecs(number), true});
        }
        live.startedAt = clock.now();
        live.sourceLanguage = AppleSystemSpeechLanguage::english;
        return live;
    }
    TranscriptRecordMetadata save(const QString &title, const QStringList &sources = {"Hello there"})
    {
        clock.advance(std::chrono::minutes(1));
        const TranscriptRecordMetadata saved = store.save(live(sources), settings);
        TranscriptDocument document = store.loadRecord(saved.id);
        document.metadata.title = title;
        store.update(document);
        return store.loadRecord(saved.id).metadata;
    }
    QString file(const TranscriptRecordMetadata &record, const char *name) const
    {
        return folder.filePath(QStringLiteral("library/sessions/") + record.folderName + QLatin1Char('/')
            + QString::fromLatin1(name));
    }
    /// Makes the record one that cannot be opened.
    void damage(const TranscriptRecordMetadata &record) const
    {
        replaceFile(file(record, "lines.json"), "[", Durability::renamed);
    }
    static QString idText(const TranscriptRecordMetadata &record)
    {
        return record.id.toString(QUuid::WithoutBraces);
    }
};

} // namespace lumaphone::test
