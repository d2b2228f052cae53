#pragma once

#include "app/inspector/ProviderTexts.h"
#include "base/MainQueue.h"
#include "storage/ProviderKeyReader.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <stop_token>

namespace lumaphone {

class LumaphoneSettings;

/// What the provider sheet edits. The fields are copies: nothing is kept before save(). Main thread.
class ProviderSettingsModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(QString baseURL READ baseURL WRITE setBaseURL NOTIFY baseURLChanged)
    Q_PROPERTY(QString model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged)
    Q_PROPERTY(QString baseURLPlaceholder READ baseURLPlaceholder CONSTANT)
    Q_PROPERTY(QString apiKeyPlaceholder READ apiKeyPlaceholder NOTIFY apiKeyStatusTextChanged)
    Q_PROPERTY(QString apiKeyStatusText READ apiKeyStatusText NOTIFY apiKeyStatusTextChanged)
    Q_PROPERTY(bool mayClearKey READ mayClearKey NOTIFY apiKeyStatusTextChanged)
    /// "none", "testing", "success" or "failure".
    Q_PROPERTY(QString testStatus READ testStatusName NOTIFY testStatusChanged)
    Q_PROPERTY(QString testStatusText READ testStatusText NOTIFY testStatusChanged)
    Q_PROPERTY(bool isTestingProvider READ isTestingProvider NOTIFY testStatusChanged)

public:
    enum ProviderTestStatus { none, testing, success, failure };
    Q_ENUM(ProviderTestStatus)

    /// The settings must outlive the model.
    ProviderSettingsModel(LumaphoneSettings &settings, std::shared_ptr<Clock> clock,
        std::shared_ptr<MainQueue> mainQueue, QObject *parent = nullptr);
    /// A test under way is aborted.
    ~ProviderSettingsModel() override;

    const QString &baseURL() const { return m_baseURL; }
    void setBaseURL(const QString &url);
    const QString &model() const { return m_model; }
    void setModel(const QString &model);
    /// As typed; never filled from the keychain.
    const QString &apiKey() const { return m_apiKey; }
    void setApiKey(const QString &key);
    QString baseURLPlaceholder() const;
    QString apiKeyPlaceholder() const;
    QString apiKeyStatusText() const;
    bool mayClearKey() const;
    ProviderTestStatus testStatus() const { return m_testStatus; }
    QString testStatusName() const;
    const QString &testStatusText() const { return m_testStatusText; }
    bool isTestingProvider() const { return m_testStatus == testing; }

    /// Fills the fields with what is saved; the key's stays empty.
    Q_INVOKABLE void open();
    /// Aborts a test under way and forgets what was typed.
    Q_INVOKABLE void close();
    /// Keeps the fields in the settings, and a typed key in the keychain.
    Q_INVOKABLE void save();
    Q_INVOKABLE void clearKey();
    /// Sends one test translation with the fields as they are, and when no key is typed the one that was
    /// saved for this server.
    Q_INVOKABLE void testProvider();

signals:
    void baseURLChanged();
    void modelChanged();
    void apiKeyChanged();
    void apiKeyStatusTextChanged();
    void testStatusChanged();

private:
    providertexts::SavedKey savedKey() const;
    static QCoro::Task<> runTest(QPointer<ProviderSettingsModel> self, std::stop_token stop);
    void setTestStatus(ProviderTestStatus status, const QString &text);
    void forgetTest();

    LumaphoneSettings &m_settings;
    ProviderKeyReader m_keyReader;
    std::stop_source m_test;
    QString m_baseURL;
    QString m_model;
    QString m_apiKey;
    ProviderTestStatus m_testStatus = none;
    QString m_testStatusText;
};

} // namespace lumaphone
