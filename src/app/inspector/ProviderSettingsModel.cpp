#include "app/inspector/ProviderSettingsModel.h"

#include "base/LocalizedError.h"
#include "base/Text.h"
#include "language/TranslationLanguages.h"
#include "storage/LumaphoneSettings.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/provider/ProviderAddress.h"

#include <QMetaEnum>

namespace lumaphone {

namespace {

/// The test's sentence holds a term, so that the test shows whether terms are kept.
LumaphoneGlossaryPrompt testGlossary()
{
    LumaphoneGlossaryTerm term;
    term.source = QStringLiteral("Lumaphone");
    term.target = QStringLiteral("Lumaphone");
    term.mode = LumaphoneGlossaryTermMode::preserve;
    return {{term}};
}

} // namespace

ProviderSettingsModel::ProviderSettingsModel(LumaphoneSettings &settings, std::shared_ptr<Clock> clock,
    std::shared_ptr<MainQueue> mainQueue, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_keyReader(settings.providerKey(), std::move(clock), std::move(mainQueue))
{
    connect(&settings.providerKey(), &ProviderKeyStore::changed, this,
        &ProviderSettingsModel::apiKeyStatusTextChanged);
    open();
}

ProviderSettingsModel::~ProviderSettingsModel()
{
    m_test.request_stop();
}

void ProviderSettingsModel::setBaseURL(const QString &url)
{
    if (m_baseURL != url) {
        m_baseURL = url;
        forgetTest();
        emit baseURLChanged();
        emit apiKeyStatusTextChanged();
    }
}

void ProviderSettingsModel::setModel(const QString &model)
{
    if (m_model != model) {
        m_model = model;
        forgetTest();
        emit modelChanged();
    }
}

void ProviderSettingsModel::setApiKey(const QString &key)
{
    if (m_apiKey != key) {
        m_apiKey = key;
        forgetTest();
        emit apiKeyChanged();
        emit apiKeyStatusTextChanged();
    }
}

QString ProviderSettingsModel::baseURLPlaceholder() const
{
    return LumaphoneSettings::defaultProviderBaseURL();
}

QString ProviderSettingsModel::apiKeyPlaceholder() const
{
    return providertexts::apiKeyPlaceholder(savedKey());
}

QString ProviderSettingsModel::apiKeyStatusText() const
{
    return providertexts::apiKeyStatusText(
        !m_apiKey.isEmpty(), savedKey(), m_settings.providerKey().address());
}

bool ProviderSettingsModel::mayClearKey() const
{
    return m_settings.providerKey().presence() != ProviderKeyPresence::absent;
}

providertexts::SavedKey ProviderSettingsModel::savedKey() const
{
    return providertexts::savedKey(m_settings.providerKey(), providerAddress(text::trimmed(m_baseURL)));
}

QString ProviderSettingsModel::testStatusName() const
{
    return QString::fromLatin1(QMetaEnum::fromType<ProviderTestStatus>().valueToKey(m_testStatus));
}

void ProviderSettingsModel::open()
{
    setBaseURL(m_settings.providerBaseURL());
    setModel(m_settings.providerModel());
    setApiKey({});
    forgetTest();
}

void ProviderSettingsModel::close()
{
    open();
}

void ProviderSettingsModel::save()
{
    m_settings.setProviderBaseURL(m_baseURL);
    m_settings.setProviderModel(m_model);
    if (!text::trimmed(m_apiKey).isEmpty()) {
        m_settings.saveProviderAPIKey(m_apiKey);
    }
    setApiKey({});
}

void ProviderSettingsModel::clearKey()
{
    m_test.request_stop();
    setApiKey({});
    m_settings.saveProviderAPIKey({});
    setTestStatus(success, providertexts::apiKeyCleared());
}

void ProviderSettingsModel::testProvider()
{
    if (isTestingProvider()) {
        return;
    }
    m_test = std::stop_source();
    setTestStatus(testing, providertexts::testing(!m_apiKey.isEmpty(), savedKey()));
    runTest(this, m_test.get_token());
}

QCoro::Task<> ProviderSettingsModel::runTest(QPointer<ProviderSettingsModel> self, std::stop_token stop)
{
    OpenAICompatibleProviderConfiguration configuration {
        text::trimmed(self->m_baseURL), text::trimmed(self->m_apiKey), text::trimmed(self->m_model)};
    ProviderTestStatus status = failure;
    QString text;
    try {
        if (configuration.apiKey.isEmpty()) {
            const AddressedText key = co_await self->m_keyReader.read(stop);
            if (key.address == providerAddress(configuration.baseURL)) {
                configuration.apiKey = key.text;
            }
        }
        if (!self || stop.stop_requested()) {
            co_return;
        }
        // A new one each time: what another one knows from before is no answer of the server's.
        OpenAICompatibleTranslationService translator;
        text = providertexts::testSucceeded(
            co_await translator.translate(QStringLiteral("Lumaphone is ready."),
                translationSourceIdentifier(AppleSystemSpeechLanguage::english), configuration,
                testGlossary(), stop));
        status = success;
    } catch (const std::exception &error) {
        text = localizedDescription(error);
    }
    if (self && !stop.stop_requested()) {
        self->setTestStatus(status, text);
    }
}

void ProviderSettingsModel::setTestStatus(ProviderTestStatus status, const QString &text)
{
    if (m_testStatus != status || m_testStatusText != text) {
        m_testStatus = status;
        m_testStatusText = text;
        emit testStatusChanged();
    }
}

void ProviderSettingsModel::forgetTest()
{
    m_test.request_stop();
    setTestStatus(none, {});
}

} // namespace lumaphone
