#pragma once

#include "cli/CommandStreams.h"
#include "session/LumaphoneCaptionLine.h"
#include "session/TranslationState.h"

#include <QString>

namespace lumaphone::cli {

/// Shows a session's caption lines as they change. The session calls it on the main thread; throws nothing.
class CaptionPrinter
{
public:
    virtual ~CaptionPrinter() = default;
    /// A line was opened or changed.
    virtual void lineChanged(const LumaphoneCaptionLine &line, TranslationState translation) = 0;
    /// What the session says of itself.
    virtual void statusChanged(const QString &status) = 0;
    /// The session has failed, or a translation has.
    virtual void failed(const QString &message) = 0;
    /// The session has ended: shows what was held back. Nothing else is called afterwards.
    virtual void finish() = 0;
};

} // namespace lumaphone::cli
