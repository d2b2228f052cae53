#pragma once

#include "base/Record.h"
#include "platform/Clock.h"
#include "platform/FileViewer.h"
#include "storage/LiveTranscript.h"
#include "storage/TranscriptCompactor.h"
#include "storage/TranscriptDocument.h"
#include "storage/TranscriptIndex.h"
#include "storage/TranscriptLibraryLayout.h"
#include "storage/TranscriptSearch.h"

#include <QCoroTask>
#include <QHash>
#include <QList>
#include <QLocale>
#include <QObject>

#include <chrono>
#include <optional>

namespace lumaphone {

class LumaphoneSettings;
class TranscriptFolder;

/// The user's saved transcripts: one index of all, and one folder for each. Lives on the main thread; reads
/// and writes synchronously, so that every change is on the disk when the operation returns.
///
/// An operation that fails puts its text into `lastErrorMessage` and throws it as a LocalizedError; the next
/// change that succeeds clears it.
class TranscriptLibraryStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<lumaphone::TranscriptRecordMetadata> records READ records NOTIFY recordsChanged)
    Q_PROPERTY(std::optional<QString> lastErrorMessage READ lastErrorMessage NOTIFY lastErrorMessageChanged)

public:
    struct Environment
    {
        TranscriptLibraryLayout layout;
        RevisionQuestion areRevisions;
        Clock &clock;
        FileViewer &fileViewer;
        UuidGenerator makeUuid = &QUuid::createUuid;
        QLocale locale; ///< of default titles, dates and searches
    };

    /// Creates the folders and loads the index. One that is damaged is kept under another name and made anew
    /// from the session folders; `lastErrorMessage` says so. Never throws.
    explicit TranscriptLibraryStore(Environment environment, QObject *parent = nullptr);

    /// Newest first.
    const QList<TranscriptRecordMetadata> &records() const { return m_records; }
    const std::optional<QString> &lastErrorMessage() const { return m_lastErrorMessage; }

    /// Saves a live session, compacted, and returns its record. One that was saved before keeps its record,
    /// folder, title and note.
    TranscriptRecordMetadata save(const LiveTranscript &live, const LumaphoneSettings &settings);
    /// Gives the lines of a saved transcript that lack one their translation, by the canonical form of their
    /// source text. Everything else stays as the user has left it; a transcript that was deleted stays so.
    void addTranslations(const QUuid &id, const QHash<QString, QString> &translations);
    /// Reads a transcript from its folder. Its lines are compacted again.
    TranscriptDocument loadRecord(const QUuid &id);
    /// Replaces a saved transcript by an edited one.
    void update(const TranscriptDocument &document);
    /// Deletes a transcript with its folder.
    void remove(const TranscriptRecordMetadata &record);
    /// Shows the transcript's folder in the desktop's file viewer.
    QCoro::Task<> openFolder(TranscriptRecordMetadata record);

    /// The records whose texts contain `query` without regard to case, in their order; all for a blank one.
    QList<TranscriptRecordMetadata> filteredRecords(const QString &query) const;
    /// Prepares a part of what the first search needs, for about as long as `budget`. Whether all of it is
    /// done.
    bool prepareSearch(std::chrono::milliseconds budget) const;

signals:
    void recordsChanged();
    void lastErrorMessageChanged();

private:
    template<typename Operation> auto attempt(Operation operation);
    template<typename Change> void change(Change operation);

    void load();
    void refresh();
    QList<TranscriptRecordMetadata> withFolders(QList<TranscriptRecordMetadata> records) const;
    void rebuild(const LocalizedError &damage);
    const TranscriptRecordMetadata &record(const QUuid &id) const;
    TranscriptRecordMetadata newRecord(const LiveTranscript &live, const QUuid &id) const;
    TranscriptDocument documentFor(const LiveTranscript &live, const LumaphoneSettings &settings) const;
    TranscriptFolder folder(const TranscriptRecordMetadata &record) const;
    TranscriptDocument readDocument(const TranscriptRecordMetadata &indexed) const;
    void writeDocument(const TranscriptDocument &document);
    void setRecords(const QList<TranscriptRecordMetadata> &records);
    void setLastErrorMessage(const std::optional<QString> &message);

    Environment m_environment;
    TranscriptCompactor m_compactor;
    TranscriptIndex m_index;
    mutable TranscriptSearch m_search;
    QList<TranscriptRecordMetadata> m_records;
    std::optional<QString> m_lastErrorMessage;
};

} // namespace lumaphone
