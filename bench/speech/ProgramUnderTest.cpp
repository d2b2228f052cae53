#include "bench/speech/ProgramUnderTest.h"

#include "LumaphoneInstallation.h"
#include "bench/speech/ProcessUse.h"
#include "bench/speech/Waiting.h"
#include "platform/desktop/XdgFolders.h"
#include "storage/UserFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace lumaphone::bench {

namespace {

const auto cli = QStringLiteral("lumaphone-cli");
const auto bundledFolder = QStringLiteral("english-speech");
const auto bundledNetwork = QStringLiteral("english-speech/encoder.onnx");

QString built(const QString &name)
{
    return QDir(QStringLiteral(LUMAPHONE_BUILD_BIN_DIR)).filePath(name);
}

QStringList runtime()
{
    return {QStringLiteral("libonnxruntime.so"), QStringLiteral("libsherpa-onnx-c-api.so")};
}

bool areBuilt(const QStringList &names)
{
    return std::all_of(
        names.begin(), names.end(), [](const QString &name) { return QFileInfo::exists(built(name)); });
}

/// As the user would ask.
bool hasInstalledFourLanguages()
{
    QProcess list;
    list.start(built(cli), {QStringLiteral("models"), QStringLiteral("list")});
    list.waitForFinished();
    const QByteArray models = '\n' + list.readAllStandardOutput();
    return models.contains("\nsense-voice\tinstalled\t") && models.contains("\nsilero-vad\tinstalled\t");
}

} // namespace

QString nameOf(Engine engine)
{
    switch (engine) {
    case Engine::bundledNetwork:
        return QStringLiteral("bundled");
    case Engine::fourLanguages:
        return QStringLiteral("four-languages");
    case Engine::pocketSphinx:
        return QStringLiteral("pocketsphinx");
    }
    Q_UNREACHABLE();
}

QString titleOf(Engine engine)
{
    switch (engine) {
    case Engine::bundledNetwork:
        return QStringLiteral("bundled network");
    case Engine::fourLanguages:
        return QStringLiteral("four languages");
    case Engine::pocketSphinx:
        return QStringLiteral("PocketSphinx");
    }
    Q_UNREACHABLE();
}

const std::vector<Engine> &allEngines()
{
    static const std::vector<Engine> all {
        Engine::bundledNetwork, Engine::fourLanguages, Engine::pocketSphinx};
    return all;
}

std::optional<QString> ProgramUnderTest::whatIsMissing(Engine engine)
{
    if (!areBuilt({cli, QStringLiteral("lumaphone-core-cli"), QStringLiteral("lumaphone-speech-host")})) {
        return QStringLiteral("The program is not built.");
    }
    if (engine == Engine::pocketSphinx) {
        return std::nullopt;
    }
    if (!areBuilt(runtime())) {
        return QStringLiteral("The speech runtime is missing: packaging/install-speech-runtime fetches it.");
    }
    if (engine == Engine::bundledNetwork && !areBuilt({bundledNetwork})) {
        return QStringLiteral("The English network is missing: packaging/install-speech-runtime fetches it.");
    }
    if (engine == Engine::fourLanguages && !hasInstalledFourLanguages()) {
        return QStringLiteral("The models sense-voice and silero-vad are not installed.");
    }
    return std::nullopt;
}

ProgramUnderTest::ProgramUnderTest(Engine engine)
    : m_engine(engine)
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    if (const auto missing = whatIsMissing(engine)) {
        throw BenchError(*missing);
    }
    for (const char *variable :
        {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        const auto name = QString::fromLatin1(variable);
        m_environment.insert(name, m_folder.filePath(name));
        QDir().mkpath(m_folder.filePath(name));
    }
    m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    installPrograms();
    installEngine();
}

void ProgramUnderTest::requireEngine(pid_t process) const
{
    if (speechHostOf(process).has_value() != (m_engine != Engine::pocketSphinx)) {
        throw BenchError(QStringLiteral("The program was to recognise speech with %1, but does not.")
                             .arg(nameOf(m_engine)));
    }
}

void ProgramUnderTest::installPrograms()
{
    // A program finds its resources from where it really lies, so that a link to it would not do.
    QDir().mkpath(QFileInfo(program()).path());
    if (!QFile::copy(built(cli), program())) {
        throw BenchError(QStringLiteral("%1 cannot be written.").arg(program()));
    }
    for (const auto &name : {QStringLiteral("lumaphone-core-cli"), QStringLiteral("lumaphone-speech-host")}) {
        link(built(name), name);
    }
}

void ProgramUnderTest::installEngine()
{
    if (m_engine == Engine::pocketSphinx) {
        return;
    }
    for (const QString &library : runtime()) {
        link(built(library), library);
    }
    if (m_engine == Engine::bundledNetwork) {
        link(built(bundledFolder), bundledFolder);
        return;
    }
    const QString models = QDir(m_environment.value(QStringLiteral("XDG_DATA_HOME")))
                               .filePath(QStringLiteral("Lumaphone/Models"));
    QDir().mkpath(QFileInfo(models).path());
    if (!QFile::link(modelsFolder(XdgFolders()), models)) {
        throw BenchError(QStringLiteral("%1 cannot be written.").arg(models));
    }
}

/// Among the program's resources.
void ProgramUnderTest::link(const QString &target, const QString &name) const
{
    const QDir resources(QFileInfo(program()).dir().filePath(QStringLiteral(LUMAPHONE_RESOURCES_FROM_BIN)));
    const QString path = QDir::cleanPath(resources.filePath(name));
    QDir().mkpath(QFileInfo(path).path());
    if (!QFile::link(QFileInfo(target).canonicalFilePath(), path)) {
        throw BenchError(QStringLiteral("%1 cannot be written.").arg(path));
    }
}

} // namespace lumaphone::bench
