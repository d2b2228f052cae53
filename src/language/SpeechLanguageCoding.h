#pragma once

#include "base/Json.h"
#include "language/AppleSystemSpeechLanguage.h"

namespace lumaphone {

/// The language's raw value.
json::Value toJson(AppleSystemSpeechLanguage language);
/// The language of a member of `object`. Throws json::DecodingError, also for an unknown raw value.
AppleSystemSpeechLanguage speechLanguage(const json::Value &object, const char *key);

} // namespace lumaphone
