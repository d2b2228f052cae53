#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <memory>

namespace lumaphone::test {

/// How long a process may take to do what it was started for.
inline constexpr int processLimitMs = 20000;

/// A process that does not outlive this one, however that ends. Not started yet.
std::unique_ptr<QProcess> makeOwnedProcess();
/// Kills it, if it runs, and waits for its end.
void endProcess(QProcess &process);
/// Throws std::runtime_error with what a process has said.
[[noreturn]] void failProcess(const QString &what, const QByteArray &said);

} // namespace lumaphone::test
