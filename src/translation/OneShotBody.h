#pragma once

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <cstring>
#include <utility>

namespace lumaphone {

/// The body of a request that must reach the server once at most. When a connection ends unanswered, the
/// network library sends a request again, up to three times; this body has nothing to give then, so that no
/// second complete request leaves the machine.
class OneShotBody final : public QIODevice
{
public:
    explicit OneShotBody(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    /// Whether the library tried to send the body a second time.
    bool wasReadAgain() const { return m_wasReadAgain; }

    qint64 size() const override { return m_bytes.size(); }
    bool atEnd() const override { return m_isSpent || QIODevice::atEnd(); }
    /// Succeeds: the library also calls it when an answer has come after all.
    bool reset() override
    {
        m_isSpent = true;
        return true;
    }

protected:
    qint64 readData(char *data, qint64 maximumSize) override
    {
        if (m_isSpent) {
            m_wasReadAgain = true;
            return -1;
        }
        const qint64 count = std::min(maximumSize, m_bytes.size() - pos());
        std::memcpy(data, m_bytes.constData() + pos(), static_cast<std::size_t>(count));
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    bool m_isSpent = false;
    bool m_wasReadAgain = false;
};

} // namespace lumaphone
