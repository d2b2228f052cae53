#pragma once

#include "base/LocalizedError.h"
#include "session/CaptionTranslator.h"
#include "support/VirtualClock.h"
#include "translation/TransportError.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace lumaphone::test {

/// A provider on a virtual clock. By default the translation of "x" is "譯:x", at once.
class ScriptedTranslator final : public CaptionTranslator
{
public:
    struct Plan
    {
        std::chrono::milliseconds delay {0};
        QString error; ///< empty for a success
        bool endsWhenStopped = true;
        bool isTimeOut = false; ///< the error is that no answer came
    };
    struct Call
    {
        QString text;
        AppleSystemSpeechLanguage language;
        std::chrono::milliseconds at; ///< on the virtual clock
        std::stop_token stop;
    };

    explicit ScriptedTranslator(std::shared_ptr<VirtualClock> clock)
        : m_clock(std::move(clock))
    {
    }

    static QString translationOf(const QString &text) { return QStringLiteral("譯:") + text; }

    bool translates() const override { return isWanted; }
    QString providerName() const override { return name; }
    QCoro::Task<QString> translateText(
        QString text, AppleSystemSpeechLanguage language, std::stop_token stop) override
    {
        const auto now = std::chrono::floor<std::chrono::milliseconds>(m_clock->monotonic());
        calls.push_back({text, language, now, stop});
        if (language == AppleSystemSpeechLanguage::mandarin) {
            co_return text;
        }
        const Plan planned = plan ? plan(text) : Plan {};
        std::chrono::milliseconds left = planned.delay;
        while (left.count() > 0 && !(planned.endsWhenStopped && stop.stop_requested())) {
            const auto step = planned.endsWhenStopped ? std::min(left, std::chrono::milliseconds(50)) : left;
            co_await m_clock->sleepFor(step);
            left -= step;
        }
        if (left.count() > 0) {
            throw PlatformError(QStringLiteral("cancelled"));
        }
        if (planned.isTimeOut && !planned.error.isEmpty()) {
            throw TransportError::timedOut(QUrl(QStringLiteral("http://server/v1")), planned.delay);
        }
        if (!planned.error.isEmpty()) {
            throw PlatformError(planned.error);
        }
        const auto known = translations.find(text);
        co_return known == translations.end() ? translationOf(text) : known->second;
    }
    void warm(AppleSystemSpeechLanguage language) override { warmed.push_back(language); }

    bool isWanted = true;
    QString name = QStringLiteral("Apple Translation");
    std::function<Plan(const QString &text)> plan;
    std::map<QString, QString> translations; ///< those that are not "譯:" and the text
    std::vector<Call> calls;
    std::vector<AppleSystemSpeechLanguage> warmed;

private:
    std::shared_ptr<VirtualClock> m_clock;
};

} // namespace lumaphone::test
