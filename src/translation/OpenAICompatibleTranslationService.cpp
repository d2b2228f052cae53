#include "translation/OpenAICompatibleTranslationService.h"

#include "base/LruCache.h"
#include "base/MainQueue.h"
#include "base/Text.h"
#include "translation/ChatCompletion.h"
#include "translation/ChatCompletionsEndpoint.h"
#include "translation/ChatCompletionsRequest.h"
#include "translation/ErrorBody.h"
#include "translation/HttpExchange.h"
#include "translation/OpenAICompatibleTranslationError.h"

#include <QDeadlineTimer>
#include <QNetworkAccessManager>

namespace lumaphone {

namespace {

constexpr int maximumRedirections = 5;

QString cacheKey(const OpenAICompatibleProviderConfiguration &configuration, const QString &source,
    const LumaphoneGlossaryPrompt &glossaryPrompt, const QString &text)
{
    constexpr QChar tab = u'\t';
    return text::canonicalForm(configuration.baseURL + tab + configuration.model + tab + source + tab
        + glossaryPrompt.signature() + tab + text);
}

QString systemPrompt(const QString &source, const LumaphoneGlossaryPrompt &glossaryPrompt)
{
    return QStringLiteral("請將內容翻譯成台灣使用的繁體中文。\n"
                          "請使用台灣常見詞彙、自然口語與正式標點。\n"
                          "不要使用簡體字，不要使用中國大陸慣用語。\n"
                          "來源語言代碼：")
        + source + QStringLiteral("。\n") + glossaryPrompt.promptText()
        + QStringLiteral("\n只輸出翻譯結果，不要解釋。");
}

QByteArray requestBody(const QString &model, const QString &prompt, const QString &text)
{
    const ChatCompletionRequest request {
        model,
        {{QStringLiteral("system"), prompt}, {QStringLiteral("user"), text}},
        0.2,
    };
    return request.encoded();
}

/// Where to send the request again, or none: a redirection that keeps method and body (307, 308) is followed
/// within the same origin only.
std::optional<QUrl> redirectionWithinOrigin(const QUrl &from, const HttpReply &reply)
{
    if ((reply.status != 307 && reply.status != 308) || reply.location.isEmpty()) {
        return std::nullopt;
    }
    const QUrl to = from.resolved(QUrl::fromEncoded(reply.location, QUrl::StrictMode));
    const int defaultPort = from.scheme() == QStringLiteral("https") ? 443 : 80;
    const bool isSameOrigin = to.scheme() == from.scheme() && to.host() == from.host()
        && to.port(defaultPort) == from.port(defaultPort);
    return isSameOrigin ? std::optional(to) : std::nullopt;
}

QString translation(const HttpReply &reply, const QString &apiKey)
{
    using Error = OpenAICompatibleTranslationError;
    if (!reply.status) {
        throw Error(Error::Case::invalidResponse);
    }
    if (*reply.status < 200 || *reply.status > 299) {
        // What is cut or replaced first could leave a part of the key.
        const QString body = error_body::withoutSecret(error_body::text(reply.body), apiKey);
        throw Error::httpFailure(*reply.status, error_body::sanitized(body));
    }
    const auto response = ChatCompletionResponse::decoded(reply.body);
    QString content
        = response.choices.isEmpty() ? QString() : text::trimmed(response.choices.first().message.content);
    if (content.isEmpty()) {
        throw Error(Error::Case::emptyResponse);
    }
    return content;
}

} // namespace

/// Shared with the calls under way, which may end after the service.
struct OpenAICompatibleTranslationService::State
{
    std::chrono::milliseconds timeout;
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    QNetworkAccessManager network;
    LruCache<QString, QString> translatedTextBySource {cacheCapacity};
    std::stop_source serviceIsGone;
    /// An exchange succeeded, so that the next one may meet a connection that the server is about to close.
    bool mayReuseConnection = false;

    static QCoro::Task<QString> translate(std::shared_ptr<State> state, QString text, QString source,
        OpenAICompatibleProviderConfiguration configuration, LumaphoneGlossaryPrompt glossaryPrompt,
        std::stop_token stop);
    /// Sends and follows redirections.
    QCoro::Task<HttpReply> send(QNetworkRequest request, QByteArray body, std::stop_token stop);
    /// Sends once; once more if a connection that was kept open since the last exchange ends unanswered.
    QCoro::Task<HttpReply> exchange(
        QNetworkRequest request, QByteArray body, QDeadlineTimer deadline, std::stop_token stop);
};

OpenAICompatibleTranslationService::OpenAICompatibleTranslationService(std::chrono::milliseconds timeout)
    : m_state(std::make_shared<State>())
{
    m_state->timeout = timeout;
}

OpenAICompatibleTranslationService::~OpenAICompatibleTranslationService()
{
    m_state->serviceIsGone.request_stop();
}

QCoro::Task<QString> OpenAICompatibleTranslationService::translate(QString text, QString source,
    OpenAICompatibleProviderConfiguration configuration, LumaphoneGlossaryPrompt glossaryPrompt,
    std::stop_token stop)
{
    return State::translate(m_state, std::move(text), std::move(source), std::move(configuration),
        std::move(glossaryPrompt), std::move(stop));
}

QCoro::Task<QString> OpenAICompatibleTranslationService::State::translate(std::shared_ptr<State> state,
    QString text, QString source, OpenAICompatibleProviderConfiguration configuration,
    LumaphoneGlossaryPrompt glossaryPrompt, std::stop_token stop)
{
    using Error = OpenAICompatibleTranslationError;
    const QString trimmed = text::trimmed(text);
    if (trimmed.isEmpty()) {
        co_return QString();
    }
    if (configuration.baseURL.isEmpty() || configuration.model.isEmpty()) {
        throw Error(Error::Case::missingConfiguration);
    }
    const QString key = cacheKey(configuration, source, glossaryPrompt, trimmed);
    if (const auto known = state->translatedTextBySource.find(key)) {
        co_return *known;
    }
    const QUrl endpoint = chatCompletionsURL(configuration.baseURL);
    const HttpReply reply
        = co_await state->send(chatCompletionsRequest(endpoint, configuration.apiKey, state->timeout),
            requestBody(configuration.model, systemPrompt(source, glossaryPrompt), trimmed), stop);
    const QString translated = translation(reply, configuration.apiKey);
    state->translatedTextBySource.insert(key, translated);
    co_return translated;
}

QCoro::Task<HttpReply> OpenAICompatibleTranslationService::State::send(
    QNetworkRequest request, QByteArray body, std::stop_token stop)
{
    const QDeadlineTimer deadline(timeout, Qt::PreciseTimer);
    for (int redirections = 0;; ++redirections) {
        const HttpReply reply = co_await exchange(request, body, deadline, stop);
        const auto target = redirectionWithinOrigin(request.url(), reply);
        if (!target || redirections == maximumRedirections) {
            co_return reply;
        }
        request.setUrl(*target);
    }
}

QCoro::Task<HttpReply> OpenAICompatibleTranslationService::State::exchange(
    QNetworkRequest request, QByteArray body, QDeadlineTimer deadline, std::stop_token stop)
{
    for (;;) {
        if (stop.stop_requested() || serviceIsGone.stop_requested()) {
            throw TransportError::cancelled();
        }
        const std::chrono::milliseconds remaining(deadline.remainingTime());
        HttpExchange attempt(mainQueue, network, request, body, {remaining, maximumResponseBytes});
        const auto cancel = [&attempt] {
            attempt.cancel();
        };
        const std::stop_callback cancelledByCaller(stop, cancel);
        const std::stop_callback cancelledByService(serviceIsGone.get_token(), cancel);
        try {
            const HttpReply reply = co_await attempt.reply();
            mayReuseConnection = true;
            co_return reply;
        } catch (const TransportError &error) {
            const bool wasReused = std::exchange(mayReuseConnection, false);
            if (error.reason() != TransportError::Reason::closedUnanswered || !wasReused) {
                throw;
            }
        }
    }
}

} // namespace lumaphone
