#include "bench/endurance/TrialUser.h"

#include "LumaphoneInstallation.h"
#include "bench/speech/Waiting.h"

#include <QDir>

#include <algorithm>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;

const auto program = QStringLiteral(LUMAPHONE_BUILD_BIN_DIR "/lumaphone-cli");

} // namespace

TrialUser::TrialUser()
{
    qputenv("HOME", m_home.path().toUtf8());
    // Where the window of a test::User looks, too.
    const std::pair<const char *, const char *> folders[]
        = {{"XDG_CONFIG_HOME", "config"}, {"XDG_DATA_HOME", "data"}, {"XDG_CACHE_HOME", "cache"},
            {"XDG_STATE_HOME", "state"}, {"XDG_RUNTIME_DIR", "runtime"}};
    for (const auto &[name, place] : folders) {
        const QString folder = m_home.filePath(QString::fromLatin1(place));
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(name, folder.toUtf8());
    }
    qputenv("LC_ALL", "C.UTF-8");
    m_keyring.start();
}

void TrialUser::useProvider(const QString &baseURL, const QString &key)
{
    const auto set = QStringList {QStringLiteral("settings"), QStringLiteral("set")};
    run(set + QStringList {QStringLiteral("lumaphone.provider.baseURL"), baseURL});
    run(set + QStringList {QStringLiteral("lumaphone.provider.model"), QStringLiteral("trial")});
    if (!key.isEmpty()) {
        run({QStringLiteral("key"), QStringLiteral("set")}, key.toUtf8() + '\n');
    }
}

std::unique_ptr<test::RunningProgram> TrialUser::start(const QStringList &arguments) const
{
    return std::make_unique<test::RunningProgram>(program, arguments);
}

QByteArray TrialUser::run(const QStringList &arguments, const QByteArray &input) const
{
    const auto running = start(arguments);
    if (!input.isEmpty()) {
        running->write(input);
    }
    running->closeInput();
    const bool hasEnded = waitUntil([&] { return !running->isRunning(); }, 30s);
    if (!hasEnded || running->crashed() || running->exitCode() != 0) {
        throw BenchError(QStringLiteral("%1: %2").arg(
            arguments.join(QLatin1Char(' ')), QString::fromUtf8(running->messages())));
    }
    return running->output();
}

QStringList leftOf(const std::vector<KnownProcess> &processes)
{
    const auto isAnyRunning = [&processes] {
        return std::any_of(processes.begin(), processes.end(), &isRunning);
    };
    waitUntil([&] { return !isAnyRunning(); }, 2s);
    QStringList left;
    for (const KnownProcess &process : processes) {
        if (isRunning(process)) {
            left.append(QStringLiteral("%1 (%2)").arg(QString::fromUtf8(process.name)).arg(process.id));
        }
    }
    return left;
}

} // namespace lumaphone::bench
