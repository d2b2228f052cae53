#pragma once

#include "cli/CaptionPrinter.h"

namespace lumaphone::cli {

/// One JSON object per line of output: {"event":"line", …} with the members of the line for each change of a
/// line, {"event":"status","status":…,"isFailure":…} for each status and failure. Failures are told to people
/// as well.
class JsonLinesCaptionPrinter final : public CaptionPrinter
{
public:
    explicit JsonLinesCaptionPrinter(CommandStreams streams);

    void lineChanged(const LumaphoneCaptionLine &line, TranslationState translation) override;
    void statusChanged(const QString &status) override;
    void failed(const QString &message) override;
    void finish() override { }

private:
    void printStatus(const QString &status, bool isFailure);

    CommandStreams m_streams;
};

} // namespace lumaphone::cli
