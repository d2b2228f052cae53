// A chat-completions server for demonstrations and end-to-end tests. It "translates" a text by putting it
// into brackets, listens on 127.0.0.1 and prints its base URL as the first line of its standard output.
#include "base/Json.h"
#include "support/MisbehavingHttpServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

#include <chrono>
#include <cstdio>

using namespace lumaphone;
using test::MisbehavingHttpServer;

namespace behaviour = test::behaviour;

namespace {

/// The content of the last message of a request.
QString userText(const QByteArray &body)
{
    const json::Value request = json::parse(body);
    const json::Value &messages = json::member(request, "messages");
    return messages.is_array() && !messages.empty() ? json::text(messages.back(), "content") : QString();
}

MisbehavingHttpServer::Behaviour answerTo(const test::RecordedRequest &request, const QString &requiredKey)
{
    if (!request.requestLine.startsWith("POST /v1/chat/completions ")) {
        return behaviour::respond(404, "{\"error\":{\"message\":\"no such path\"}}");
    }
    if (!requiredKey.isEmpty() && request.header("Authorization") != "Bearer " + requiredKey.toUtf8()) {
        return behaviour::respond(401, "{\"error\":{\"message\":\"wrong key\"}}");
    }
    try {
        return behaviour::complete(QStringLiteral("〔%1〕").arg(userText(request.body)));
    } catch (const json::DecodingError &error) {
        return behaviour::respond(400, error.errorDescription().toUtf8());
    }
}

/// How a failure mode of the command line answers; none for a name that is no mode.
std::optional<MisbehavingHttpServer::Behaviour> failure(const QString &mode)
{
    bool isStatus = false;
    const int status = mode.toInt(&isStatus);
    if (isStatus && status >= 300 && status <= 599) {
        return behaviour::respond(status, "{\"error\":{\"message\":\"as you wished\"}}");
    }
    if (mode == QStringLiteral("mute")) {
        return behaviour::stayMute();
    }
    if (mode == QStringLiteral("close")) {
        return behaviour::sendRawAndClose({});
    }
    if (mode == QStringLiteral("garbage")) {
        return behaviour::respond(200, "<html>");
    }
    if (mode == QStringLiteral("empty")) {
        return behaviour::respond(200, "{\"choices\":[]}");
    }
    return std::nullopt;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Answers chat-completions requests on 127.0.0.1 with the text in brackets."));
    const QCommandLineOption delay(QStringLiteral("delay"), QStringLiteral("Wait before each answer."),
        QStringLiteral("ms"), QStringLiteral("0"));
    const QCommandLineOption fail(QStringLiteral("fail"),
        QStringLiteral("Answer with an error: a status (300-599), mute, close, garbage or empty."),
        QStringLiteral("mode"));
    const QCommandLineOption failures(QStringLiteral("failures"),
        QStringLiteral("How many requests fail before answers become good; all when not given."),
        QStringLiteral("n"));
    const QCommandLineOption requiredKey(
        QStringLiteral("key"), QStringLiteral("Refuse every other key."), QStringLiteral("key"));
    arguments.addOptions({delay, fail, failures, requiredKey});
    arguments.addHelpOption();
    arguments.process(application);

    const auto failing = arguments.isSet(fail) ? failure(arguments.value(fail)) : std::nullopt;
    if (arguments.isSet(fail) && !failing) {
        QTextStream(stderr) << "No such failure: " << arguments.value(fail) << Qt::endl;
        return 2;
    }
    int failuresLeft = arguments.isSet(failures) ? arguments.value(failures).toInt() : -1;
    const std::chrono::milliseconds pause(arguments.value(delay).toInt());

    MisbehavingHttpServer server;
    server.alwaysAnswer([&](QTcpSocket &connection, const test::RecordedRequest &request) {
        const bool fails = failing && failuresLeft != 0;
        failuresLeft -= failuresLeft > 0 ? 1 : 0;
        const auto answer = fails ? *failing : answerTo(request, arguments.value(requiredKey));
        QTimer::singleShot(
            pause, &connection, [answer, request, &connection] { answer(connection, request); });
    });
    QTextStream(stdout) << server.url(QStringLiteral("/v1")) << Qt::endl;
    return QCoreApplication::exec();
}
