#pragma once

#include "support/Coroutines.h"
#include "support/RunningProgram.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace lumaphone::test {

/// The program's window, with a user who reads and clicks. What the user can do is said in Driver.h.
class User
{
public:
    enum class Acquaintance { knowsTheProgram, isNew };

    /// `home` keeps what the user stores; `windowSystem` are the variables that name it.
    User(const QString &home, const QList<std::pair<QString, QString>> &windowSystem,
        Acquaintance acquaintance = Acquaintance::knowsTheProgram)
        : m_program(readyFor(acquaintance, home), {},
            QList<std::pair<QString, QString>> {
                {"HOME", home}, {"XDG_CONFIG_HOME", home + "/config"}, {"XDG_DATA_HOME", home + "/data"}}
                + windowSystem)
    {
    }

    /// Gives a command and returns whether it was done; what was seen is `seen`.
    bool does(const QByteArray &command)
    {
        m_program.write(command + "\n");
        ++m_commands;
        waitUntil(
            [this] { return m_program.outputLines().size() >= m_commands || !m_program.isRunning(); }, 70000);
        const QList<QByteArray> lines = m_program.outputLines();
        const QByteArray answer = lines.size() >= m_commands ? lines.at(m_commands - 1)
                                                             : "the program ended: " + m_program.messages();
        seen = QString::fromUtf8(answer);
        return answer.startsWith("ok");
    }

    RunningProgram &program() { return m_program; }

    QString seen;

private:
    /// The program. Who knows it has closed what is told to new users.
    static QString readyFor(Acquaintance acquaintance, const QString &home)
    {
        if (acquaintance == Acquaintance::knowsTheProgram) {
            const QString folder = home + QStringLiteral("/config/lumaphone");
            QDir().mkpath(folder);
            QFile file(folder + QStringLiteral("/settings.json"));
            QJsonObject settings;
            if (file.open(QIODevice::ReadOnly)) {
                settings = QJsonDocument::fromJson(file.readAll()).object();
                file.close();
            }
            settings.insert(QStringLiteral("lumaphone.welcome.isClosed"), true);
            if (!file.open(QIODevice::WriteOnly)) {
                qFatal("The user's settings cannot be written");
            }
            file.write(QJsonDocument(settings).toJson());
        }
        return QStringLiteral(LUMAPHONE_DRIVEN);
    }

    RunningProgram m_program;
    qsizetype m_commands = 0;
};

} // namespace lumaphone::test

#define DO(command) QVERIFY2(user.does(command), qPrintable(user.seen))
