#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
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
/// Returns when a process that has been started `isReady`, which is asked again and again. If it ends before
/// that, or takes too long, it is ended, and `failure` thrown with what it has `said`.
void awaitProcess(QProcess &process, const QString &failure, const std::function<bool()> &isReady,
    const std::function<QByteArray()> &said);
/// Runs a program to its end and returns what it has printed. Throws like failProcess() if it fails.
QByteArray outputOf(const QString &program, const QStringList &arguments,
    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());

} // namespace lumaphone::test
