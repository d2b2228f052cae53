#pragma once

#include "language/WrittenChinese.h"
#include "models/ModelStore.h"
#include "platform/TranslationFramework.h"

#include <QList>

namespace lumaphone {

/// The way from one language to another.
struct TranslationRoute
{
    QList<const ModelEntry *> legs; ///< in the order of travel; empty if there is no way
    WrittenChinese written = WrittenChinese::none; ///< by the last leg
};

/// Directly or through English. A model that writes Simplified Chinese serves where none writes Traditional.
/// The regions of the languages, such as in "ja-JP", do not count.
TranslationRoute translationRoute(
    const ModelCatalogue &catalogue, const LocaleLanguage &source, const LocaleLanguage &target);

/// What has to happen before the route can be used: missing beats partial, partial damaged. `installed` for a
/// route whose models are all in place.
ModelState routeState(const ModelStore &store, const TranslationRoute &route);

} // namespace lumaphone
