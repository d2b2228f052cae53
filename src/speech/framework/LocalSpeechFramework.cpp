#include "speech/framework/LocalSpeechFramework.h"

#include "language/SpeechLocales.h"
#include "speech/framework/EngineChoice.h"
#include "speech/framework/LocalSpeechAnalyzer.h"
#include "speech/framework/MissingModelEngine.h"

#include <algorithm>

namespace lumaphone {

namespace {

/// One spelling for each supported locale; the given one for any other.
QString canonical(const QString &localeIdentifier)
{
    return supportedSpeechLocale(localeIdentifier).value_or(localeIdentifier);
}

} // namespace

LocalSpeechFramework::LocalSpeechFramework(
    std::vector<std::shared_ptr<SpeechEngine>> engines, std::shared_ptr<MainQueue> mainQueue)
    : m_engines(std::move(engines))
    , m_mainQueue(std::move(mainQueue))
{
}

QCoro::Task<SpeechAuthorization> LocalSpeechFramework::requestAuthorization()
{
    co_return SpeechAuthorization::authorized;
}

QCoro::Task<std::optional<QString>> LocalSpeechFramework::supportedLocale(QString localeIdentifier)
{
    co_return supportedSpeechLocale(localeIdentifier);
}

QCoro::Task<> LocalSpeechFramework::reserve(QString localeIdentifier)
{
    const QString locale = canonical(localeIdentifier);
    if (!isInstalled(locale)) {
        throw SpeechFrameworkError(missingModelText(locale));
    }
    ++m_reservations[locale];
    co_return;
}

QCoro::Task<> LocalSpeechFramework::release(QString localeIdentifier)
{
    const auto found = m_reservations.find(canonical(localeIdentifier));
    if (found != m_reservations.end() && --found->second == 0) {
        m_reservations.erase(found);
    }
    co_return;
}

bool LocalSpeechFramework::isInstalled(const QString &localeIdentifier) const
{
    return enginesFor({canonical(localeIdentifier)}).front() != nullptr;
}

QString LocalSpeechFramework::recogniserName(const QString &localeIdentifier) const
{
    const auto engine = enginesFor({canonical(localeIdentifier)}).front();
    return engine ? engine->name() : QString();
}

QString LocalSpeechFramework::installationHint(const QString &localeIdentifier) const
{
    for (const auto &engine : m_engines) {
        if (const auto hint = engine->installationHint(localeIdentifier)) {
            return *hint;
        }
    }
    return {};
}

int LocalSpeechFramework::reservations(const QString &localeIdentifier) const
{
    const auto found = m_reservations.find(canonical(localeIdentifier));
    return found == m_reservations.end() ? 0 : found->second;
}

std::shared_ptr<SpeechModule> LocalSpeechFramework::makeTranscriber(
    const QString &localeIdentifier, const SpeechModuleOptions &options)
{
    const QString locale = canonical(localeIdentifier);
    return std::make_shared<LocalSpeechModule>(locale, options);
}

std::shared_ptr<SpeechAnalyzer> LocalSpeechFramework::makeAnalyzer(
    std::vector<std::shared_ptr<SpeechModule>> modules)
{
    std::vector<std::shared_ptr<LocalSpeechModule>> own;
    for (const auto &module : modules) {
        own.push_back(std::dynamic_pointer_cast<LocalSpeechModule>(module));
        if (!own.back()) {
            qFatal("LocalSpeechFramework: a module of another framework");
        }
    }
    std::vector<QString> locales;
    std::transform(own.begin(), own.end(), std::back_inserter(locales),
        [](const auto &module) { return module->localeIdentifier(); });
    const auto engines = enginesFor(locales);
    std::vector<LocalSpeechAnalyzer::Assignment> assignments;
    for (std::size_t i = 0; i < own.size(); ++i) {
        assignments.push_back({own[i],
            engines[i] ? engines[i] : std::make_shared<MissingModelEngine>(missingModelText(locales[i]))});
    }
    return std::make_shared<LocalSpeechAnalyzer>(std::move(assignments), m_mainQueue);
}

std::vector<std::shared_ptr<SpeechEngine>> LocalSpeechFramework::enginesFor(
    const std::vector<QString> &locales) const
{
    std::vector<std::vector<QString>> installed;
    std::transform(m_engines.begin(), m_engines.end(), std::back_inserter(installed),
        [](const auto &engine) { return engine->installedLocales(); });
    std::vector<std::shared_ptr<SpeechEngine>> engines;
    for (const std::optional<std::size_t> engine : engineChoice(locales, installed)) {
        engines.push_back(engine ? m_engines[*engine] : nullptr);
    }
    return engines;
}

QString LocalSpeechFramework::missingModelText(const QString &localeIdentifier) const
{
    const QString name = speechLanguageName(localeIdentifier);
    const QString text = name == localeIdentifier
        ? QStringLiteral("尚未安裝「%1」的語音辨識模型。").arg(name)
        : QStringLiteral("尚未安裝「%1」（%2）的語音辨識模型。").arg(name, localeIdentifier);
    return text + installationHint(localeIdentifier);
}

} // namespace lumaphone
