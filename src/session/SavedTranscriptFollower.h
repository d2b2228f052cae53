#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QUuid>

namespace lumaphone {

class SystemAudioCaptureController;
class TranscriptLibraryStore;

/// Brings translations that arrive after a session was saved into its record, also while the next session
/// runs. They are written together when all is quiet or many have come. Main thread.
class SavedTranscriptFollower final : public QObject
{
    Q_OBJECT

public:
    /// Translations that are not written yet, at most.
    static constexpr int mostUnwritten = 16;

    /// Controller and library outlive the follower.
    SavedTranscriptFollower(
        SystemAudioCaptureController &controller, TranscriptLibraryStore &library, QObject *parent = nullptr);
    ~SavedTranscriptFollower() override;

    /// Writes what has arrived so far. What cannot be written is kept for the next time.
    void write();

signals:
    void failed(const QString &message);

private:
    using Translations = QHash<QString, QString>; ///< by the canonical form of the source text

    void take(const QUuid &transcript, const QString &sourceText, const QString &translatedText);

    TranscriptLibraryStore &m_library;
    QHash<QUuid, Translations> m_unwritten;
    int m_count = 0;
};

} // namespace lumaphone
