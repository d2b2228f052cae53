#pragma once

#include "base/LocalizedError.h"
#include "capture/AppleSystemSpeechTranscriberDelegate.h"

#include <QStringList>

#include <functional>
#include <mutex>
#include <utility>

namespace lumaphone::test {

/// Keeps what a transcriber says, one line each: "english final hello", "failed: message". Any thread.
class RecordingTranscriberDelegate final : public AppleSystemSpeechTranscriberDelegate
{
public:
    /// Called inside every callback, before the line can be seen. Set before the transcriber starts.
    std::function<void()> onCallback;

    void didRecognize(AppleSystemSpeechTranscriber &, const QString &text, AppleSystemSpeechLanguage language,
        bool isFinal) override
    {
        record(
            rawValue(language) + (isFinal ? QStringLiteral(" final ") : QStringLiteral(" volatile ")) + text);
    }

    void didFail(AppleSystemSpeechTranscriber &, std::exception_ptr error) override
    {
        record(QStringLiteral("failed: ") + localizedDescription(error));
    }

    QStringList lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    void record(const QString &line)
    {
        if (onCallback) {
            onCallback();
        }
        const std::lock_guard lock(m_mutex);
        m_lines.append(line);
    }

    mutable std::mutex m_mutex;
    QStringList m_lines;
};

} // namespace lumaphone::test
