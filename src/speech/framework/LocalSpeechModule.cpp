#include "speech/framework/LocalSpeechModule.h"

namespace lumaphone {

LocalSpeechModule::LocalSpeechModule(QString localeIdentifier, const SpeechModuleOptions &options)
    : m_localeIdentifier(std::move(localeIdentifier))
    , m_options(options)
{
}

std::optional<SpeechResult> LocalSpeechModule::nextResult(const std::stop_token &stop)
{
    return m_results.next(stop);
}

void LocalSpeechModule::give(SpeechResult result)
{
    if (result.isFinal || m_options.reportsVolatileResults) {
        m_results.yield(std::move(result));
    }
}

void LocalSpeechModule::finish()
{
    m_results.finish();
}

void LocalSpeechModule::fail(const QString &description)
{
    m_results.fail(std::make_exception_ptr(SpeechFrameworkError(description)));
}

} // namespace lumaphone
