#include "models/SpeechModels.h"

namespace lumaphone {

bool isRecognizer(const ModelEntry &entry)
{
    return entry.kind == ModelKind::speech
        && (entry.hasRole(QStringLiteral("model")) || entry.hasRole(QStringLiteral("encoder")));
}

const ModelEntry *voiceDetectorInPlace(const ModelStore &store)
{
    const ModelEntry *bundled = nullptr;
    for (const ModelEntry &entry : store.catalogue().entries()) {
        const bool detects = entry.kind == ModelKind::speech && entry.hasRole(QStringLiteral("vad"));
        if (!detects || store.state(entry) != ModelState::installed) {
            continue;
        }
        if (!entry.isBundled) {
            return &entry;
        }
        bundled = bundled == nullptr ? &entry : bundled;
    }
    return bundled;
}

} // namespace lumaphone
