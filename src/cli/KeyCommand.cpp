#include "cli/KeyCommand.h"

#include "base/Completion.h"
#include "base/Text.h"
#include "platform/Clock.h"
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

/// The key as the user types it.
QString askForKey(const CommandStreams &streams)
{
    const EchoOff silent;
    if (silent.isTerminal()) {
        streams.messages(QStringLiteral("API 金鑰：").toUtf8());
    }
    QString key = text::trimmed(QString::fromUtf8(readLine()));
    if (silent.isTerminal()) {
        streams.complain({});
    }
    return key;
}

QCoro::Task<> resolveAfter(
    std::shared_ptr<Clock> clock, std::chrono::nanoseconds duration, Completion<> completion)
{
    co_await clock->sleepFor(duration);
    completion.resolve();
}

/// Whether the keychain says what it holds; complains if it does not. It asks the user nothing for that.
QCoro::Task<bool> answers(const KeyAccess &access, const CommandStreams &streams)
{
    constexpr std::chrono::seconds longestWait {5};
    const ProviderKeyStore &store = access.settings.providerKey();
    if (store.presence() == ProviderKeyPresence::unknown) {
        const Completion<> answered(access.mainQueue);
        QObject::connect(&store, &ProviderKeyStore::changed, [answered] { answered.resolve(); });
        resolveAfter(access.clock, longestWait, answered);
        co_await answered;
    }
    if (store.presence() != ProviderKeyPresence::unknown) {
        co_return true;
    }
    streams.complain(
        QStringLiteral("鑰匙圈沒有回應。請確認 Secret Service（例如 GNOME Keyring）運作正常後再試一次。"));
    co_return false;
}

/// Saves the key and returns what the keychain then holds: saving is silent, only reading tells what came of
/// it.
QCoro::Task<QString> keptAfterSaving(const KeyAccess &access, const QString &key)
{
    ProviderKeyStore &store = access.settings.providerKey();
    const Completion<> ended(access.mainQueue);
    QObject::connect(&store, &ProviderKeyStore::saved, [ended] { ended.resolve(); });
    access.settings.saveProviderAPIKey(key);
    co_await ended;
    const Completion<AddressedText> kept(access.mainQueue);
    store.read([kept](const AddressedText &read) { kept.resolve(read); });
    const AddressedText read = co_await kept;
    co_return read.text;
}

} // namespace

QCoro::Task<ExitStatus> runKeySet(KeyAccess access, const CommandStreams &streams)
{
    const QString key = askForKey(streams);
    if (key.isEmpty()) {
        streams.complain(
            QStringLiteral("沒有讀到 API 金鑰。要移除已儲存的，請用「lumaphone-cli key clear」。"));
        co_return exitUsage;
    }
    if (access.settings.providerKey().configuredAddress().isEmpty()) {
        streams.complain(
            QStringLiteral("API 金鑰 只會送到設定的位址，但 lumaphone.provider.baseURL 不是 http "
                           "或 https 位址。請先設定它。"));
        co_return exitFailure;
    }
    if (!co_await answers(access, streams)) {
        co_return exitFailure;
    }
    const QString kept = co_await keptAfterSaving(access, key);
    if (kept != key) {
        streams.complain(QStringLiteral(
            "無法把 API 金鑰 存入鑰匙圈。請確認 Secret Service（例如 GNOME Keyring）正在執行且已解鎖。"));
        co_return exitFailure;
    }
    streams.print(QStringLiteral("API 金鑰 已儲存到鑰匙圈，只會送到 %1。")
                      .arg(access.settings.providerKey().address()));
    co_return exitSuccess;
}

QCoro::Task<ExitStatus> runKeyClear(KeyAccess access, const CommandStreams &streams)
{
    if (!co_await answers(access, streams)) {
        co_return exitFailure;
    }
    // With a name: the compiler destroys twice what is made in the awaiting expression.
    const QString none;
    const QString kept = co_await keptAfterSaving(access, none);
    if (!kept.isEmpty()) {
        streams.complain(QStringLiteral("無法從鑰匙圈移除 API 金鑰。"));
        co_return exitFailure;
    }
    streams.print(QStringLiteral("鑰匙圈裡沒有 API 金鑰 了。"));
    co_return exitSuccess;
}

QCoro::Task<ExitStatus> runKeyStatus(KeyAccess access, const CommandStreams &streams)
{
    if (!co_await answers(access, streams)) {
        co_return exitFailure;
    }
    const LumaphoneSettings &settings = access.settings;
    if (!settings.hasProviderAPIKey()) {
        streams.print(QStringLiteral("尚未儲存 API 金鑰。"));
    } else if (settings.isProviderAPIKeyForEndpoint()) {
        streams.print(QStringLiteral("已儲存 API 金鑰，只會送到 %1。").arg(settings.providerKey().address()));
    } else {
        streams.print(QStringLiteral("已儲存的 API 金鑰 屬於另一個位址，不會送到目前設定的 %1。")
                          .arg(settings.providerBaseURL()));
    }
    co_return exitSuccess;
}

} // namespace lumaphone::cli
