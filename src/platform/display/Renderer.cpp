#include "platform/display/Renderer.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>

namespace lumaphone {

namespace {

/// Variables with which a user chooses how the toolkit draws.
constexpr std::array choices {
    "QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI_BACKEND", "LIBGL_ALWAYS_SOFTWARE"};

} // namespace

bool hasGraphicsCard()
{
    return !QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("renderD*")}, QDir::System).isEmpty()
        || QFile::exists(QStringLiteral("/dev/nvidiactl"));
}

QString preferredRenderer(
    const QProcessEnvironment &environment, const std::function<bool()> &hasGraphicsCard)
{
    const bool isChosen = std::any_of(choices.begin(), choices.end(),
        [&environment](const char *name) { return environment.contains(QString::fromLatin1(name)); });
    return isChosen || hasGraphicsCard() ? QString() : QStringLiteral("software");
}

} // namespace lumaphone
