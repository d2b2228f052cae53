#include "storage/TranscriptTextChoice.h"

namespace lumaphone {

QString rawValue(TranscriptTextChoice choice)
{
    switch (choice) {
    case TranscriptTextChoice::source:
        return QStringLiteral("source");
    case TranscriptTextChoice::translation:
        return QStringLiteral("translation");
    case TranscriptTextChoice::bilingual:
        return QStringLiteral("bilingual");
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
