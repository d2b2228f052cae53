#pragma once

#include <QString>

namespace lumaphone::cli {

QString programHelp();
QString captionHelp();
QString settingsHelp();
QString keyHelp();
QString draftHelp();
QString glossaryHelp();

} // namespace lumaphone::cli
