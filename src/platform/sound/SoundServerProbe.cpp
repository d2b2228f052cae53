#include "platform/sound/SoundServerProbe.h"

#include "platform/sound/PulseConnection.h"
#include "platform/sound/SoundAccess.h"

namespace lumaphone {

namespace {

SoundServerFacts ask(const PulseOptions &options)
{
    PulseConnection connection(options, {});
    SoundServerFacts facts;
    facts.server = connection.serverName();
    const std::string defaultOutput = connection.defaultSinkName();
    for (const PulseSink &sink : connection.sinks()) {
        facts.outputs.append({QString::fromStdString(sink.description), sink.name == defaultOutput});
    }
    const std::string defaultInput = connection.defaultSourceName();
    for (const PulseSource &source : connection.sources()) {
        if (!source.isMonitor()) {
            facts.inputs.append({QString::fromStdString(source.description), source.name == defaultInput});
        }
    }
    return facts;
}

} // namespace

SoundServerFacts probeSoundServer(const PulseOptions &options)
{
    SoundServerFacts facts;
    if (!mayUseSound(options)) {
        facts.problem = QStringLiteral("沙盒裡的 Lumaphone 沒有使用聲音的權限。");
        return facts;
    }
    try {
        return ask(options);
    } catch (const CaptureServiceError &error) {
        facts.problem = error.errorDescription();
        return facts;
    }
}

} // namespace lumaphone
