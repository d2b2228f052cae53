#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace lumaphone::cli {

/// Where a printer's bytes go, such as standard output. Called once for what belongs together.
using ByteSink = std::function<void(const QByteArray &)>;

enum class TranslationState {
    unwanted, ///< the session does not translate
    pending,
    arrived,
    failed,
};

/// Shows a session's caption lines as they change.
class CaptionPrinter
{
public:
    virtual ~CaptionPrinter() = default;
    /// A line was opened or changed.
    virtual void lineChanged(const LumaphoneCaptionLine &line, TranslationState translation) = 0;
    virtual void statusChanged(const QString &status) = 0;
    virtual void failed(const QString &message) = 0;
    /// The session has ended: shows what was held back.
    virtual void finish() = 0;
};

} // namespace lumaphone::cli
