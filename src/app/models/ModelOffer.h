#pragma once

#include "app/models/ModelsModel.h"
#include "language/AppleSystemSpeechLanguage.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace lumaphone {

class LumaphoneSettings;

/// The models as the window shows them, and what it asks before it fetches any: whether to install those that
/// a chosen language lacks, or whether a licence is accepted. Nothing is fetched unless the user says so.
/// Main thread.
class ModelOffer final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one offer.")
    /// A ModelsModel.
    Q_PROPERTY(QAbstractItemModel *models READ models CONSTANT)
    /// The rows of `models` that the question is about.
    Q_PROPERTY(QList<int> rows READ rows NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// Text of the button that says yes.
    Q_PROPERTY(QString acceptText READ acceptText NOTIFY changed)
    Q_PROPERTY(bool isInstalling READ isInstalling NOTIFY changed)
    /// Whether everything asked about is in place.
    Q_PROPERTY(bool isReady READ isReady NOTIFY changed)

public:
    /// Whether speech in a language can be recognized on this machine now.
    using IsRecognized = std::function<bool(AppleSystemSpeechLanguage)>;

    /// Everything given must outlive the offer.
    ModelOffer(ModelsModel &models, const LumaphoneSettings &settings, IsRecognized isRecognized,
        QObject *parent = nullptr);

    QAbstractItemModel *models() const { return &m_models; }
    const QList<int> &rows() const { return m_rows; }
    const QString &title() const { return m_title; }
    QString message() const;
    QString acceptText() const;
    bool isInstalling() const;
    bool isReady() const;

    /// A language was chosen, by its raw value: asks if models could make it heard and are not here.
    Q_INVOKABLE void languageChosen(const QString &language);
    /// The user wants a row: installs it, or asks first where its licence has to be accepted.
    Q_INVOKABLE void want(int row);
    /// Ends the installation of a row.
    Q_INVOKABLE void stop(int row);
    Q_INVOKABLE void remove(int row);
    /// As ModelsModel has it.
    Q_INVOKABLE QString licence(int row) const;
    /// Looks at the disk again.
    Q_INVOKABLE void refresh();
    /// Yes to what was asked, licences included.
    Q_INVOKABLE void accept();
    /// Ends the installations of what was asked; what has been fetched is kept.
    Q_INVOKABLE void cancel();

signals:
    /// There is a question.
    void asked();
    void changed();
    /// As ModelsModel has it.
    void installationEnded(const QString &text);

private:
    bool is(int row, ModelsModel::Role role) const;
    bool mustAcceptLicence() const;
    /// The rows that make speech in a language heard, and translated where this machine does that.
    QList<int> missingRows(AppleSystemSpeechLanguage language) const;
    void ask(const QList<int> &rows, const QString &title, const QString &message);

    ModelsModel &m_models;
    const LumaphoneSettings &m_settings;
    IsRecognized m_isRecognized;
    QList<int> m_rows;
    QString m_title;
    QString m_message;
};

} // namespace lumaphone
