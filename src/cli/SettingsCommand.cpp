#include "cli/SettingsCommand.h"

#include "cli/SettingsTable.h"
#include "storage/LumaphoneSettings.h"
#include "storage/SettingKeys.h"

#include <algorithm>

namespace lumaphone::cli {

namespace {

/// The setting with that key; a message and null if there is none.
const Setting *find(const QString &key, const CommandStreams &streams)
{
    const auto &table = settingsTable();
    const auto found
        = std::find_if(table.begin(), table.end(), [&key](const Setting &s) { return s.key == key; });
    if (found != table.end()) {
        return &*found;
    }
    streams.complain(
        QStringLiteral("沒有這個設定：%1。「lumaphone-cli settings list」會列出所有設定。").arg(key));
    return nullptr;
}

/// Whether there may be a key that is not for the configured server.
bool mayLackItsKey(const LumaphoneSettings &settings)
{
    return settings.providerKey().presence() != ProviderKeyPresence::absent
        && !settings.isProviderAPIKeyForEndpoint();
}

} // namespace

ExitStatus runSettingsList(const LumaphoneSettings &settings, const CommandStreams &streams)
{
    for (const Setting &setting : settingsTable()) {
        streams.print(setting.key + QLatin1Char('\t') + setting.get(settings));
    }
    return exitSuccess;
}

ExitStatus runSettingsGet(
    const SettingsGet &command, const LumaphoneSettings &settings, const CommandStreams &streams)
{
    const Setting *setting = find(command.key, streams);
    if (setting == nullptr) {
        return exitUsage;
    }
    streams.print(setting->get(settings));
    return exitSuccess;
}

ExitStatus runSettingsSet(
    const SettingsSet &command, LumaphoneSettings &settings, const CommandStreams &streams)
{
    const Setting *setting = find(command.key, streams);
    if (setting == nullptr) {
        return exitUsage;
    }
    if (!setting->set(settings, command.value)) {
        streams.complain(
            QStringLiteral("%1 的值應為%2，不能是「%3」。").arg(setting->key, setting->kind, command.value));
        return exitUsage;
    }
    if (setting->key == settingkeys::providerBaseURL && mayLackItsKey(settings)) {
        streams.complain(QStringLiteral(
            "若已儲存 API 金鑰：它只屬於先前的位址，不會送到新的位址。需要時請用「lumaphone-cli key "
            "set」再存一次。"));
    }
    return exitSuccess;
}

} // namespace lumaphone::cli
