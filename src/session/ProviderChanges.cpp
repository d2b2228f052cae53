#include "session/ProviderChanges.h"

#include "storage/LumaphoneSettings.h"

#include <utility>

namespace lumaphone {

ProviderChanges::ProviderChanges(const LumaphoneSettings &settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
{
    using Settings = LumaphoneSettings;
    connect(&settings, &Settings::processingModeChanged, this, &ProviderChanges::note);
    for (const auto changed : {&Settings::providerBaseURLChanged, &Settings::providerModelChanged}) {
        connect(&settings, changed, this, &ProviderChanges::noteEndpointChange);
    }
    for (const auto changed : {&ProviderKeyStore::saved, &ProviderKeyStore::found}) {
        connect(&settings.providerKey(), changed, this, &ProviderChanges::noteEndpointChange);
    }
}

void ProviderChanges::noteModelChange()
{
    if (m_settings.processingMode() == LumaphoneProcessingMode::appleMode) {
        note();
    }
}

void ProviderChanges::noteEndpointChange()
{
    if (m_settings.processingMode() == LumaphoneProcessingMode::customAPI) {
        note();
    }
}

void ProviderChanges::note()
{
    if (std::exchange(m_isNoted, true)) {
        return;
    }
    const auto tell = [this] {
        m_isNoted = false;
        emit happened();
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

} // namespace lumaphone
