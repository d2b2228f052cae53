#pragma once

#include "bench/speech/ProcessUse.h"
#include "support/PrivateKeyring.h"
#include "support/PrivateSessionBus.h"
#include "support/RunningProgram.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace lumaphone::bench {

/// The person who uses the program in a trial: a home, a session bus and a keyring of their own, to which the
/// environment of this process points as long as this object lives.
class TrialUser
{
public:
    TrialUser();

    /// Lets the program translate with the service at this address, which asks for `key` if there is one.
    void useProvider(const QString &baseURL, const QString &key = {});
    /// Starts the terminal's program.
    std::unique_ptr<test::RunningProgram> start(const QStringList &arguments) const;
    /// Runs it to its end. Throws BenchError if it fails.
    QByteArray run(const QStringList &arguments, const QByteArray &input = {}) const;

private:
    QTemporaryDir m_home;
    test::PrivateSessionBus m_bus;
    test::PrivateKeyring m_keyring {m_bus};
};

/// Waits for the end of those of these processes that still run. What is left after a moment.
QStringList leftOf(const std::vector<KnownProcess> &processes);

} // namespace lumaphone::bench
