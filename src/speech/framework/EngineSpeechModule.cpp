#include "speech/framework/EngineSpeechModule.h"

namespace lumaphone {

EngineSpeechModule::EngineSpeechModule(QString localeIdentifier, const SpeechModuleOptions &options)
    : m_localeIdentifier(std::move(localeIdentifier))
    , m_options(options)
{
}

std::optional<SpeechResult> EngineSpeechModule::nextResult(const std::stop_token &stop)
{
    return m_results.next(stop);
}

void EngineSpeechModule::give(SpeechResult result)
{
    if (result.isFinal || m_options.reportsVolatileResults) {
        m_results.yield(std::move(result));
    }
}

void EngineSpeechModule::finish()
{
    m_results.finish();
}

void EngineSpeechModule::fail(const QString &description)
{
    m_results.fail(std::make_exception_ptr(SpeechFrameworkError(description)));
}

} // namespace lumaphone
