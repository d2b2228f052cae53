#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace lumaphone::cli {

/// Where bytes go, such as standard output. Called once for what belongs together.
using ByteSink = std::function<void(const QByteArray &)>;

/// What a command writes to.
struct CommandStreams
{
    ByteSink out; ///< results
    ByteSink messages; ///< what went wrong

    void print(const QString &line) const { out((line + QLatin1Char('\n')).toUtf8()); }
    void complain(const QString &line) const { messages((line + QLatin1Char('\n')).toUtf8()); }
};

} // namespace lumaphone::cli
