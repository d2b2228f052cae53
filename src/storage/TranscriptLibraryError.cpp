#include "storage/TranscriptLibraryError.h"

namespace lumaphone {

namespace {

QString description(TranscriptLibraryError::Case errorCase)
{
    switch (errorCase) {
    case TranscriptLibraryError::Case::emptyTranscript:
        return QStringLiteral("目前沒有可儲存的字幕。");
    case TranscriptLibraryError::Case::recordNotFound:
        return QStringLiteral("找不到指定的 transcript。");
    }
    Q_UNREACHABLE();
}

} // namespace

TranscriptLibraryError::TranscriptLibraryError(Case errorCase)
    : LocalizedError(description(errorCase))
    , m_case(errorCase)
{
}

} // namespace lumaphone
