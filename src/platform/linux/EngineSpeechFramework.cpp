#include "platform/linux/EngineSpeechFramework.h"

#include "platform/linux/EngineSpeechAnalyzer.h"
#include "platform/linux/MissingModelEngine.h"
#include "platform/linux/SpeechLocales.h"

#include <algorithm>

namespace lumaphone {

namespace {

/// One spelling for each supported locale; the given one for any other.
QString canonical(const QString &localeIdentifier)
{
    return supportedSpeechLocale(localeIdentifier).value_or(localeIdentifier);
}

} // namespace

EngineSpeechFramework::EngineSpeechFramework(
    std::vector<std::shared_ptr<SpeechEngine>> engines, std::shared_ptr<MainQueue> mainQueue)
    : m_engines(std::move(engines))
    , m_mainQueue(std::move(mainQueue))
{
}

QCoro::Task<SpeechAuthorization> EngineSpeechFramework::requestAuthorization()
{
    co_return SpeechAuthorization::Authorized;
}

QCoro::Task<std::optional<QString>> EngineSpeechFramework::supportedLocale(QString localeIdentifier)
{
    co_return supportedSpeechLocale(localeIdentifier);
}

QCoro::Task<> EngineSpeechFramework::reserve(QString localeIdentifier)
{
    const QString locale = canonical(localeIdentifier);
    if (!engineFor(locale)) {
        throw SpeechFrameworkError(missingModelText(locale));
    }
    ++m_reservations[locale];
    co_return;
}

QCoro::Task<> EngineSpeechFramework::release(QString localeIdentifier)
{
    const auto found = m_reservations.find(canonical(localeIdentifier));
    if (found != m_reservations.end() && --found->second == 0) {
        m_reservations.erase(found);
    }
    co_return;
}

bool EngineSpeechFramework::isInstalled(const QString &localeIdentifier) const
{
    return engineFor(canonical(localeIdentifier)) != nullptr;
}

int EngineSpeechFramework::reservations(const QString &localeIdentifier) const
{
    const auto found = m_reservations.find(canonical(localeIdentifier));
    return found == m_reservations.end() ? 0 : found->second;
}

std::shared_ptr<SpeechModule> EngineSpeechFramework::makeTranscriber(
    const QString &localeIdentifier, const SpeechModuleOptions &options)
{
    const QString locale = canonical(localeIdentifier);
    std::shared_ptr<SpeechEngine> engine = engineFor(locale);
    if (!engine) {
        engine = std::make_shared<MissingModelEngine>(missingModelText(locale));
    }
    return std::make_shared<EngineSpeechModule>(locale, options, std::move(engine));
}

std::shared_ptr<SpeechAnalyzer> EngineSpeechFramework::makeAnalyzer(
    std::vector<std::shared_ptr<SpeechModule>> modules)
{
    std::vector<std::shared_ptr<EngineSpeechModule>> own;
    for (const auto &module : modules) {
        own.push_back(std::dynamic_pointer_cast<EngineSpeechModule>(module));
        if (!own.back()) {
            qFatal("EngineSpeechFramework: a module of another framework");
        }
    }
    return std::make_shared<EngineSpeechAnalyzer>(std::move(own), m_mainQueue);
}

std::shared_ptr<SpeechEngine> EngineSpeechFramework::engineFor(const QString &localeIdentifier) const
{
    for (const auto &engine : m_engines) {
        const std::vector<QString> installed = engine->installedLocales();
        if (std::find(installed.begin(), installed.end(), localeIdentifier) != installed.end()) {
            return engine;
        }
    }
    return nullptr;
}

QString EngineSpeechFramework::missingModelText(const QString &localeIdentifier) const
{
    const QString name = speechLanguageName(localeIdentifier);
    QString text = (name == localeIdentifier
            ? QStringLiteral("尚未安裝「%1」的語音辨識模型。").arg(name)
            : QStringLiteral("尚未安裝「%1」（%2）的語音辨識模型。").arg(name, localeIdentifier));
    for (const auto &engine : m_engines) {
        if (const auto hint = engine->installationHint(localeIdentifier)) {
            return text + *hint;
        }
    }
    return text;
}

} // namespace lumaphone
