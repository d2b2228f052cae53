#pragma once

#include <QString>

namespace lumaphone::cli {

QString programHelp();
QString captionHelp();
QString modelsHelp();
QString settingsHelp();
QString keyHelp();
QString doctorHelp();
QString draftHelp();
QString glossaryHelp();
QString libraryHelp();

} // namespace lumaphone::cli
