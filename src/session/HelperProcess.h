#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaphone {

/// Runs an executable without arguments in the inherited environment, gives it `input` on its standard input
/// and returns its standard output once it has exited; its standard error is thrown away. Blocks without a
/// time limit and needs no event loop: one exchange costs the start of the process and little else.
/// None if the executable cannot be started or its exit status is not 0. A helper that does not care for its
/// input is no failure.
std::optional<QByteArray> exchangeWithHelper(const QString &executable, const QByteArray &input);

} // namespace lumaphone
