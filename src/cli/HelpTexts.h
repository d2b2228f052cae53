#pragma once

#include <QString>

namespace lumaphone::cli {

QString programHelp();
QString captionHelp();

} // namespace lumaphone::cli
