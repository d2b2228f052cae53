#include "support/PrivateSoundServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/prctl.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace lumaphone::test {

namespace {

constexpr int limitMs = 20000;

[[noreturn]] void fail(const QString &what, const QByteArray &said)
{
    throw std::runtime_error((what + QStringLiteral(": ") + QString::fromUtf8(said)).toStdString());
}

/// A child that does not outlive this process.
std::unique_ptr<QProcess> makeChild()
{
    auto child = std::make_unique<QProcess>();
    child->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    return child;
}

/// Otherwise an idle output works two seconds ahead.
QString promptly()
{
    return QStringLiteral("norewinds=1");
}

void end(QProcess &process)
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(limitMs);
    }
}

} // namespace

SoundPlayback::SoundPlayback(const QStringList &command, std::unique_ptr<QTemporaryFile> samples)
    : m_samples(std::move(samples))
    , m_player(makeChild())
{
    m_player->start(command.front(), command.mid(1));
    if (!m_player->waitForStarted(limitMs)) {
        fail(QStringLiteral("Cannot play"), m_player->errorString().toUtf8());
    }
}

SoundPlayback::~SoundPlayback()
{
    if (m_player) {
        stop();
    }
}

void SoundPlayback::stop()
{
    end(*m_player);
}

PrivateSoundServer::PrivateSoundServer()
{
    setEnvironment("PULSE_SERVER", "unix:" + socketPath().toUtf8());
    // Neither the user's settings nor the user's cookie take part.
    setEnvironment("PULSE_COOKIE", m_folder.filePath(QStringLiteral("cookie")).toUtf8());
    setEnvironment("PULSE_CLIENTCONFIG", "/dev/null");
    start();
}

PrivateSoundServer::~PrivateSoundServer()
{
    kill();
    for (const auto &[name, value] : m_formerEnvironment) {
        value ? qputenv(name.constData(), *value) : qunsetenv(name.constData());
    }
}

void PrivateSoundServer::setEnvironment(const char *name, const QByteArray &value)
{
    m_formerEnvironment.emplace_back(
        name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
    qputenv(name, value);
}

void PrivateSoundServer::start()
{
    m_server = makeChild();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "HOME", "PULSE_STATE_PATH"}) {
        environment.insert(QString::fromLatin1(name), m_folder.path());
    }
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.remove(QStringLiteral("PULSE_SERVER"));
    m_server->setProcessEnvironment(environment);
    m_server->setProcessChannelMode(QProcess::MergedChannels);
    QFile::remove(socketPath());
    m_server->start(QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--system=no"),
            QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
            QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"),
            QStringLiteral("--log-target=stderr"), QStringLiteral("--log-level=info"), QStringLiteral("-L"),
            QStringLiteral("module-native-protocol-unix socket=%1 auth-anonymous=1").arg(socketPath())});
    QByteArray said;
    QElapsedTimer timer;
    timer.start();
    while (!said.contains("Daemon startup complete.")) {
        if (timer.hasExpired(limitMs) || !m_server->waitForReadyRead(limitMs)) {
            fail(QStringLiteral("The private sound server does not start"), said);
        }
        said += m_server->readAll();
    }
    // Nobody reads what it says from here on.
    QObject::connect(m_server.get(), &QProcess::readyRead, m_server.get(),
        [server = m_server.get()] { server->readAll(); });
}

void PrivateSoundServer::kill()
{
    end(*m_server);
}

void PrivateSoundServer::freeze()
{
    signal(SIGSTOP);
}

void PrivateSoundServer::thaw()
{
    signal(SIGCONT);
}

void PrivateSoundServer::signal(int number)
{
    ::kill(static_cast<pid_t>(m_server->processId()), number);
}

QString PrivateSoundServer::control(const QStringList &arguments) const
{
    const auto pactl = makeChild();
    pactl->start(QStringLiteral("pactl"), arguments);
    if (!pactl->waitForFinished(limitMs) || pactl->exitCode() != 0) {
        fail(QStringLiteral("pactl ") + arguments.join(QLatin1Char(' ')), pactl->readAllStandardError());
    }
    return QString::fromUtf8(pactl->readAllStandardOutput());
}

int PrivateSoundServer::loadModule(const QString &name, const QStringList &arguments)
{
    return control(QStringList {QStringLiteral("load-module"), name} + arguments).trimmed().toInt();
}

void PrivateSoundServer::unloadModule(int index)
{
    control({QStringLiteral("unload-module"), QString::number(index)});
}

int PrivateSoundServer::addOutput(const QString &name, int rateHz, int channels)
{
    return loadModule(QStringLiteral("module-null-sink"),
        {QStringLiteral("sink_name=") + name, QStringLiteral("rate=%1").arg(rateHz),
            QStringLiteral("channels=%1").arg(channels), promptly()});
}

std::vector<int> PrivateSoundServer::addMicrophone(
    const QString &name, int rateHz, int channels, const QString &format)
{
    const QStringList sound {QStringLiteral("rate=%1").arg(rateHz),
        QStringLiteral("channels=%1").arg(channels), QStringLiteral("format=") + format};
    const QString room = name + QStringLiteral("_room");
    const int roomModule = loadModule(QStringLiteral("module-null-sink"),
        QStringList {QStringLiteral("sink_name=") + room, promptly()} + sound);
    const int microphoneModule = loadModule(QStringLiteral("module-remap-source"),
        QStringList {QStringLiteral("source_name=") + name, QStringLiteral("master=%1.monitor").arg(room)}
            + sound);
    return {roomModule, microphoneModule};
}

void PrivateSoundServer::setDefaultOutput(const QString &name)
{
    control({QStringLiteral("set-default-sink"), name});
}

void PrivateSoundServer::setDefaultMicrophone(const QString &name)
{
    control({QStringLiteral("set-default-source"), name});
}

std::vector<SoundRecording> PrivateSoundServer::recordings() const
{
    const auto rows = [this](const QString &kind) {
        return QJsonDocument::fromJson(
            control({QStringLiteral("--format=json"), QStringLiteral("list"), kind}).toUtf8())
            .array();
    };
    const QJsonArray sources = rows(QStringLiteral("sources"));
    const auto nameOf = [&](int index) {
        const auto found = std::find_if(sources.begin(), sources.end(),
            [&](const QJsonValue &source) { return source[u"index"].toInt() == index; });
        return found == sources.end() ? QString() : (*found)[u"name"].toString();
    };
    std::vector<SoundRecording> recordings;
    for (const QJsonValue &row : rows(QStringLiteral("source-outputs"))) {
        // A module that records for itself has no client.
        if (!row[u"client"].isNull()) {
            recordings.push_back(
                {row[u"index"].toInt(), nameOf(row[u"source"].toInt()), row[u"corked"].toBool()});
        }
    }
    return recordings;
}

SoundPlayback PrivateSoundServer::play(const QString &filePath, const QString &output) const
{
    QStringList command {QStringLiteral("paplay"), QStringLiteral("--latency-msec=500")};
    if (!output.isEmpty()) {
        command << QStringLiteral("--device=") + output;
    }
    return {command << filePath, nullptr};
}

SoundPlayback PrivateSoundServer::playSamples(const std::vector<qint16> &samples, int rateHz, int channels,
    const QString &output, std::chrono::milliseconds ahead) const
{
    auto file = std::make_unique<QTemporaryFile>(m_folder.filePath(QStringLiteral("samples")));
    const auto bytes = static_cast<qint64>(samples.size() * sizeof(qint16));
    if (!file->open() || file->write(reinterpret_cast<const char *>(samples.data()), bytes) != bytes
        || !file->flush()) {
        fail(QStringLiteral("Cannot write samples"), file->errorString().toUtf8());
    }
    QStringList command {QStringLiteral("pacat"), QStringLiteral("--playback"), QStringLiteral("--raw"),
        QStringLiteral("--format=s16ne"), QStringLiteral("--rate=%1").arg(rateHz),
        QStringLiteral("--channels=%1").arg(channels),
        QStringLiteral("--latency-msec=%1").arg(ahead.count())};
    if (!output.isEmpty()) {
        command << QStringLiteral("--device=") + output;
    }
    command << file->fileName();
    return {command, std::move(file)};
}

QStringList PrivateSoundServer::speechFiles()
{
    const QDir folder(QStringLiteral("/usr/share/pocketsphinx/test/data/librivox"));
    QStringList files;
    for (const QFileInfo &file : folder.entryInfoList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name)) {
        files << file.absoluteFilePath();
    }
    return files;
}

} // namespace lumaphone::test
