#pragma once

#include <QString>

/// The names under which the user's choices are stored, and by which the terminal knows them.
namespace lumaphone::settingkeys {

inline const auto sourceLanguage = QStringLiteral("lumaphone.sourceLanguage");
inline const auto audioInputSource = QStringLiteral("lumaphone.audioInputSource");
inline const auto processingMode = QStringLiteral("lumaphone.processingMode");
inline const auto captionFontSize = QStringLiteral("lumaphone.caption.fontSize");
inline const auto captionOpacity = QStringLiteral("lumaphone.caption.opacity");
inline const auto captionTheme = QStringLiteral("lumaphone.caption.theme");
inline const auto captionDisplayMode = QStringLiteral("lumaphone.caption.displayMode");
inline const auto providerBaseURL = QStringLiteral("lumaphone.provider.baseURL");
inline const auto providerModel = QStringLiteral("lumaphone.provider.model");

// What nobody sets by name: where the floating panel was, what is being installed, and what the user does not
// want to see again.
inline const auto captionFrame = QStringLiteral("lumaphone.caption.frame");
inline const auto captionOutput = QStringLiteral("lumaphone.caption.output");
inline const auto installing = QStringLiteral("lumaphone.models.installing");
inline const auto welcomeClosed = QStringLiteral("lumaphone.welcome.isClosed");

} // namespace lumaphone::settingkeys
