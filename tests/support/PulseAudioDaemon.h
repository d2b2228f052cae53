#pragma once

#include "support/SoundDaemons.h"

#include <QProcess>

#include <memory>

namespace lumaphone::test {

/// PulseAudio.
class PulseAudioDaemon final : public SoundDaemons
{
public:
    /// `folder` is where its files go.
    explicit PulseAudioDaemon(QString folder);
    ~PulseAudioDaemon() override;

    QString socketPath() const override;
    void start() override;
    void kill() override;
    void signal(int number) override;

private:
    QString m_folder;
    std::unique_ptr<QProcess> m_daemon;
};

} // namespace lumaphone::test
