#include "app/models/ModelOffer.h"

#include "language/LanguageTable.h"
#include "storage/LumaphoneSettings.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

using Language = AppleSystemSpeechLanguage;

/// As the models' catalogue names it. What serves automatic detection serves any language of it.
QString catalogueCode(Language language)
{
    return languageRow(recognitionCandidates(language).front())->code.toString();
}

QString titleFor(Language language)
{
    return language == Language::automatic
        ? QStringLiteral("安裝自動辨識需要的模型？")
        : QStringLiteral("安裝「%1」的語音辨識？").arg(displayName(language));
}

/// `recognized` are the languages that can be heard without the models.
QString messageFor(Language language, const std::vector<Language> &recognized)
{
    const QString promise = QStringLiteral("下載一次之後就能離線使用，聲音不會離開這台電腦。");
    if (language != Language::automatic) {
        return QStringLiteral("這台電腦還聽不懂%1。").arg(displayName(language)) + promise;
    }
    return (recognized.empty() ? QStringLiteral("這台電腦還沒有語音辨識模型。")
                               : QStringLiteral("自動辨識目前只聽得懂%1。").arg(displayNames(recognized)))
        + promise;
}

} // namespace

ModelOffer::ModelOffer(
    ModelsModel &models, const LumaphoneSettings &settings, IsRecognized isRecognized, QObject *parent)
    : QObject(parent)
    , m_models(models)
    , m_settings(settings)
    , m_isRecognized(std::move(isRecognized))
{
    connect(&models, &ModelsModel::dataChanged, this, &ModelOffer::changed);
    connect(&models, &ModelsModel::installationEnded, this, &ModelOffer::installationEnded);
}

QString ModelOffer::message() const
{
    if (isReady()) {
        return QStringLiteral("已經安裝完成，下次開始字幕時就會使用。");
    }
    return isInstalling() ? QStringLiteral("正在安裝。可以先做別的事，安裝會在背景繼續，"
                                           "進度顯示在 Inspector 的「離線模型」。")
                          : m_message;
}

QString ModelOffer::acceptText() const
{
    if (mustAcceptLicence()) {
        return QStringLiteral("接受並安裝");
    }
    for (const int row : m_rows) {
        if (!is(row, ModelsModel::IsReadyRole)) {
            return m_models.data(m_models.index(row), ModelsModel::InstallTitleRole).toString();
        }
    }
    return {};
}

bool ModelOffer::isInstalling() const
{
    return std::any_of(
        m_rows.begin(), m_rows.end(), [this](int row) { return is(row, ModelsModel::IsInstallingRole); });
}

bool ModelOffer::isReady() const
{
    return !m_rows.isEmpty() && std::all_of(m_rows.begin(), m_rows.end(), [this](int row) {
        return is(row, ModelsModel::IsReadyRole);
    });
}

void ModelOffer::languageChosen(const QString &language)
{
    const auto chosen = speechLanguageFromRawValue(language);
    if (!chosen) {
        return;
    }
    std::vector<Language> recognized = recognitionCandidates(*chosen);
    const auto wanted = recognized.size();
    std::erase_if(recognized, [this](Language candidate) { return !m_isRecognized(candidate); });
    if (recognized.size() == wanted) {
        return;
    }
    m_models.refresh(); // somebody else may have installed something
    if (const QList<int> rows = missingRows(*chosen); !rows.isEmpty()) {
        ask(rows, titleFor(*chosen), messageFor(*chosen, recognized));
    }
}

QList<int> ModelOffer::missingRows(Language language) const
{
    const int speech = m_models.speechRow(catalogueCode(language));
    if (speech < 0 || is(speech, ModelsModel::IsReadyRole)) {
        return {}; // it would not help
    }
    QList<int> rows {speech};
    const int translation
        = language == Language::automatic ? -1 : m_models.translationRow(catalogueCode(language));
    if (m_settings.processingMode() == LumaphoneProcessingMode::appleMode && translation >= 0
        && !is(translation, ModelsModel::IsReadyRole)) {
        rows.append(translation);
    }
    return rows;
}

void ModelOffer::want(int row)
{
    if (!is(row, ModelsModel::MustAcceptLicenceRole)) {
        m_models.install(row);
        return;
    }
    const QString title = m_models.data(m_models.index(row), ModelsModel::TitleRole).toString();
    ask({row}, QStringLiteral("安裝「%1」？").arg(title),
        QStringLiteral("請先看過授權說明。接受之後才會開始下載。"));
}

void ModelOffer::stop(int row)
{
    m_models.cancel(row);
}

void ModelOffer::remove(int row)
{
    m_models.remove(row);
}

QString ModelOffer::licence(int row) const
{
    return m_models.licence(row);
}

void ModelOffer::refresh()
{
    m_models.refresh();
}

void ModelOffer::accept()
{
    const QList<int> rows = m_rows;
    for (const int row : rows) {
        m_models.install(row, true);
    }
}

void ModelOffer::cancel()
{
    const QList<int> rows = m_rows;
    for (const int row : rows) {
        m_models.cancel(row);
    }
}

bool ModelOffer::is(int row, ModelsModel::Role role) const
{
    return m_models.data(m_models.index(row), role).toBool();
}

bool ModelOffer::mustAcceptLicence() const
{
    return std::any_of(m_rows.begin(), m_rows.end(),
        [this](int row) { return is(row, ModelsModel::MustAcceptLicenceRole); });
}

void ModelOffer::ask(const QList<int> &rows, const QString &title, const QString &message)
{
    m_rows = rows;
    m_title = title;
    m_message = message;
    emit changed();
    emit asked();
}

} // namespace lumaphone
