#pragma once

#include <QObject>

namespace lumaphone {

class LumaphoneSettings;

/// Tells when what failed to be translated may succeed: the user has chosen another provider, or the one in
/// use has another address, model or key, or another model on the device. Main thread.
class ProviderChanges final : public QObject
{
    Q_OBJECT

public:
    /// The settings outlive this object.
    explicit ProviderChanges(const LumaphoneSettings &settings, QObject *parent = nullptr);

    /// A model for translation on the device has come or gone.
    void noteModelChange();

signals:
    /// Once for all that changes in one turn of the event loop.
    void happened();

private:
    void noteEndpointChange();
    void note();

    const LumaphoneSettings &m_settings;
    bool m_isNoted = false;
};

} // namespace lumaphone
