#include "session/SavedTranscriptFollower.h"

#include "base/LocalizedError.h"
#include "base/Text.h"
#include "session/SystemAudioCaptureController.h"
#include "storage/TranscriptLibraryStore.h"

#include <utility>

namespace lumaphone {

SavedTranscriptFollower::SavedTranscriptFollower(
    SystemAudioCaptureController &controller, TranscriptLibraryStore &library, QObject *parent)
    : QObject(parent)
    , m_library(library)
{
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::savedLineTranslated, this, &SavedTranscriptFollower::take);
    connect(&controller, &Controller::translationsSettled, this, &SavedTranscriptFollower::write);
}

SavedTranscriptFollower::~SavedTranscriptFollower()
{
    write();
}

void SavedTranscriptFollower::take(
    const QUuid &transcript, const QString &sourceText, const QString &translatedText)
{
    m_unwritten[transcript].insert(text::canonicalForm(sourceText), translatedText);
    if (++m_count >= mostUnwritten) {
        write();
    }
}

void SavedTranscriptFollower::write()
{
    m_count = 0;
    const auto unwritten = std::exchange(m_unwritten, {});
    for (auto record = unwritten.cbegin(); record != unwritten.cend(); ++record) {
        try {
            m_library.addTranslations(record.key(), record.value());
        } catch (const LocalizedError &error) {
            m_unwritten.insert(record.key(), record.value());
            emit failed(error.errorDescription());
        }
    }
}

} // namespace lumaphone
