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
inline const auto captionOrder = QStringLiteral("lumaphone.caption.order");
inline const auto captionFont = QStringLiteral("lumaphone.caption.font");
inline const auto captionLineSpacing = QStringLiteral("lumaphone.caption.lineSpacing");
inline const auto captionLineWidth = QStringLiteral("lumaphone.caption.lineWidth");
inline const auto captionLines = QStringLiteral("lumaphone.caption.lines");
inline const auto captionSilence = QStringLiteral("lumaphone.caption.silence");
inline const auto providerBaseURL = QStringLiteral("lumaphone.provider.baseURL");
inline const auto providerModel = QStringLiteral("lumaphone.provider.model");

// What nobody sets by name: where the floating panel was, the server that a key without an address of its own
// was saved for, what is being installed, and what the user does not want to see again.
inline const auto captionFrame = QStringLiteral("lumaphone.caption.frame");
inline const auto captionOutput = QStringLiteral("lumaphone.caption.output");
inline const auto formerProviderAddress = QStringLiteral("lumaphone.provider.formerAddress");
inline const auto installing = QStringLiteral("lumaphone.models.installing");
inline const auto welcomeClosed = QStringLiteral("lumaphone.welcome.isClosed");

} // namespace lumaphone::settingkeys
