#include "session/SessionStatus.h"

#include "base/SetAndNotify.h"
#include "session/SessionTexts.h"

#include <utility>

namespace lumaphone {

SessionStatus::SessionStatus(QString text)
    : m_text(std::move(text))
{
}

void SessionStatus::say(const QString &text)
{
    if (!m_isOutputAwaited) {
        setAndNotify(this, m_text, text, &SessionStatus::changed);
    }
}

void SessionStatus::awaitOutput(const std::optional<QString> &output)
{
    m_isOutputAwaited = false;
    say(output ? texts::outputAwaited(*output) : texts::outputReturned());
    m_isOutputAwaited = output.has_value();
}

} // namespace lumaphone
