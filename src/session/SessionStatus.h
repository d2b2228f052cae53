#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace lumaphone {

/// The one-line status of a session. While an output is waited for, that remains the status. Main thread.
class SessionStatus final : public QObject
{
    Q_OBJECT

public:
    explicit SessionStatus(QString text);

    const QString &text() const { return m_text; }
    void say(const QString &text);
    /// The session waits for this output; without one, it waits no longer and says so.
    void awaitOutput(const std::optional<QString> &output);
    /// There is no session any more that could wait.
    void awaitNothing() { m_isOutputAwaited = false; }

signals:
    void changed();

private:
    QString m_text;
    bool m_isOutputAwaited = false;
};

} // namespace lumaphone
