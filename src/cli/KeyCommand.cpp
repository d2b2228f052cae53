#include "cli/KeyCommand.h"

#include "base/Text.h"
#include "storage/LumaphoneSettings.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>

namespace lumaphone::cli {

namespace {

/// Keeps a terminal from showing what is typed, as long as it lives.
class EchoOff
{
public:
    EchoOff()
        : m_isTerminal(::tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (m_isTerminal) {
            termios silent = m_before;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
        }
    }
    ~EchoOff()
    {
        if (m_isTerminal) {
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
        }
    }
    EchoOff(const EchoOff &) = delete;
    EchoOff &operator=(const EchoOff &) = delete;
    bool isTerminal() const { return m_isTerminal; }

private:
    termios m_before = {};
    bool m_isTerminal;
};

/// One line of standard input, without its line break. Longer than any key is enough.
QByteArray readLine()
{
    constexpr qsizetype mostBytes = 65536;
    QByteArray line;
    char byte = 0;
    while (line.size() < mostBytes) {
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0 || byte == '\n') {
            break;
        }
        line.append(byte);
    }
    return line;
}

} // namespace

ExitStatus runKeySet(LumaphoneSettings &settings, const CommandStreams &streams)
{
    QString key;
    {
        const EchoOff silent;
        if (silent.isTerminal()) {
            streams.messages(QStringLiteral("API 金鑰：").toUtf8());
        }
        key = text::trimmed(QString::fromUtf8(readLine()));
        if (silent.isTerminal()) {
            streams.complain({});
        }
    }
    if (key.isEmpty()) {
        streams.complain(
            QStringLiteral("沒有讀到 API 金鑰。要移除已儲存的，請用「lumaphone-cli key clear」。"));
        return exitUsage;
    }
    settings.saveProviderAPIKey(key);
    // Saving is silent; only reading the key back tells whether the keychain took it.
    if (settings.providerConfiguration().apiKey != key) {
        streams.complain(QStringLiteral(
            "無法把 API 金鑰存入鑰匙圈。請確認 Secret Service（例如 GNOME Keyring）正在執行且已解鎖。"));
        return exitFailure;
    }
    streams.print(QStringLiteral("API 金鑰已儲存到鑰匙圈。"));
    return exitSuccess;
}

ExitStatus runKeyClear(LumaphoneSettings &settings, const CommandStreams &streams)
{
    settings.saveProviderAPIKey({});
    if (!settings.providerConfiguration().apiKey.isEmpty()) {
        streams.complain(QStringLiteral("無法從鑰匙圈移除 API 金鑰。"));
        return exitFailure;
    }
    streams.print(QStringLiteral("鑰匙圈裡沒有 API 金鑰了。"));
    return exitSuccess;
}

ExitStatus runKeyStatus(const LumaphoneSettings &settings, const CommandStreams &streams)
{
    streams.print(settings.hasProviderAPIKey() ? QStringLiteral("已儲存 API 金鑰。")
                                               : QStringLiteral("尚未儲存 API 金鑰。"));
    return exitSuccess;
}

} // namespace lumaphone::cli
