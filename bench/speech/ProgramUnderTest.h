#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

#include <optional>
#include <vector>

namespace lumaphone::bench {

/// What recognises speech in the program.
enum class Engine {
    bundledNetwork, ///< the English network that comes with the program
    fourLanguages, ///< the networks that the user has installed
    pocketSphinx,
};

/// For the command line, such as "pocketsphinx".
QString nameOf(Engine engine);
/// For the heads of tables.
QString titleOf(Engine engine);
const std::vector<Engine> &allEngines();

/// The program as it was built, installed in a temporary folder together with what one engine needs, and
/// without what the other ones need: the program itself then chooses this engine. It sees nothing of the
/// user's data but the installed models, if they are the engine.
class ProgramUnderTest
{
public:
    /// Throws BenchError if something of this engine is missing on this machine.
    explicit ProgramUnderTest(Engine engine);

    /// A sentence that says what is missing, if something is.
    static std::optional<QString> whatIsMissing(Engine engine);

    Engine engine() const { return m_engine; }
    QString program() const { return m_folder.filePath(QStringLiteral("bin/lumaphone-cli")); }
    const QProcessEnvironment &environment() const { return m_environment; }
    /// Throws BenchError if this running program does not use the engine: with networks it has a speech host.
    void requireEngine(pid_t process) const;

private:
    void installPrograms();
    void installEngine();
    void link(const QString &target, const QString &name) const;

    const Engine m_engine;
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
};

} // namespace lumaphone::bench
