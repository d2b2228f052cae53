#include "app/welcome/WelcomeModel.h"

#include "storage/LumaphoneSettings.h"
#include "storage/SettingKeys.h"

namespace lumaphone {

WelcomeModel::WelcomeModel(LumaphoneSettings &settings, bool hasTraces, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_isWanted(!hasTraces && !settings.defaults().boolean(settingkeys::welcomeClosed).value_or(false))
{
}

void WelcomeModel::close()
{
    m_settings.defaults().setObject(settingkeys::welcomeClosed, true);
    if (m_isWanted) {
        m_isWanted = false;
        emit isWantedChanged();
    }
}

} // namespace lumaphone
