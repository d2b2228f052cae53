#include "support/PrivateSoundServer.h"

#include "support/OwnedProcess.h"
#include "support/PipeWireDaemons.h"
#include "support/PulseAudioDaemon.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <csignal>

namespace lumaphone::test {

namespace {

/// Otherwise an idle output works two seconds ahead.
QString promptly()
{
    return QStringLiteral("norewinds=1");
}

QString defaultOutputQuestion()
{
    return QStringLiteral("get-default-sink");
}

QString defaultMicrophoneQuestion()
{
    return QStringLiteral("get-default-source");
}

/// Servers without a default answer with a placeholder.
bool isName(const QString &answer)
{
    return !answer.isEmpty() && !answer.startsWith(QLatin1Char('@'));
}

} // namespace

SoundPlayback::SoundPlayback(const QStringList &command, std::unique_ptr<QTemporaryFile> samples)
    : m_samples(std::move(samples))
    , m_player(makeOwnedProcess())
{
    m_player->start(command.front(), command.mid(1));
    if (!m_player->waitForStarted(processLimitMs)) {
        failProcess(QStringLiteral("Cannot play"), m_player->errorString().toUtf8());
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
    endProcess(*m_player);
}

PrivateSoundServer::PrivateSoundServer()
{
    if (kind() == SoundServerKind::pipeWire) {
        m_daemons = std::make_unique<PipeWireDaemons>(m_folder.path());
    } else {
        m_daemons = std::make_unique<PulseAudioDaemon>(m_folder.path());
    }
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

SoundServerKind PrivateSoundServer::kind()
{
    return qgetenv("LUMAPHONE_TEST_SOUND_SERVER") == "pipewire" ? SoundServerKind::pipeWire
                                                                : SoundServerKind::pulseAudio;
}

QStringList PrivateSoundServer::missingPrograms()
{
    return kind() == SoundServerKind::pipeWire ? PipeWireDaemons::missingPrograms() : QStringList();
}

void PrivateSoundServer::setEnvironment(const char *name, const QByteArray &value)
{
    m_formerEnvironment.emplace_back(
        name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
    qputenv(name, value);
}

QString PrivateSoundServer::socketPath() const
{
    return m_daemons->socketPath();
}

void PrivateSoundServer::start()
{
    m_daemons->start();
    // Desktops have an output that stands in where there is none.
    const QStringList modules
        = control({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("modules")})
              .split(QLatin1Char('\n'));
    for (const QString &module : modules) {
        if (module.contains(QStringLiteral("module-always-sink"))) {
            unloadModule(module.section(QLatin1Char('\t'), 0, 0).toInt());
        }
    }
}

void PrivateSoundServer::kill()
{
    m_daemons->kill();
}

void PrivateSoundServer::freeze()
{
    m_daemons->signal(SIGSTOP);
}

void PrivateSoundServer::thaw()
{
    m_daemons->signal(SIGCONT);
}

QString PrivateSoundServer::control(const QStringList &arguments) const
{
    return QString::fromUtf8(outputOf(QStringLiteral("pactl"), arguments));
}

void PrivateSoundServer::awaitAnswer(
    const QStringList &question, const std::function<bool(const QString &)> &isExpected) const
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const QString said = control(question).trimmed();
        if (isExpected(said)) {
            return;
        }
        if (timer.hasExpired(processLimitMs)) {
            failProcess(question.join(QLatin1Char(' ')), said.toUtf8());
        }
    }
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
    const int module = loadModule(QStringLiteral("module-null-sink"),
        {QStringLiteral("sink_name=") + name, QStringLiteral("rate=%1").arg(rateHz),
            QStringLiteral("channels=%1").arg(channels), promptly()});
    // Who chooses the default may be a process of its own.
    awaitAnswer({defaultOutputQuestion()}, isName);
    return module;
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
    // Some servers go on listening to an output until they are told.
    if (control({defaultMicrophoneQuestion()}).trimmed().endsWith(QStringLiteral(".monitor"))) {
        control({QStringLiteral("set-default-source"), name});
    }
    awaitAnswer({defaultMicrophoneQuestion()},
        [](const QString &said) { return isName(said) && !said.endsWith(QStringLiteral(".monitor")); });
    return {roomModule, microphoneModule};
}

void PrivateSoundServer::setDefaultOutput(const QString &name)
{
    control({QStringLiteral("set-default-sink"), name});
    awaitAnswer({defaultOutputQuestion()}, [&](const QString &said) { return said == name; });
}

void PrivateSoundServer::setDefaultMicrophone(const QString &name)
{
    control({QStringLiteral("set-default-source"), name});
    awaitAnswer({defaultMicrophoneQuestion()}, [&](const QString &said) { return said == name; });
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
        failProcess(QStringLiteral("Cannot write samples"), file->errorString().toUtf8());
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
