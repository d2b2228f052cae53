#include "translation/ondevice/TranslationRoute.h"

#include "language/TranslationLanguages.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone {

namespace {

const QString &traditional()
{
    static const QString identifier = translationTargetIdentifier();
    return identifier;
}

/// The language as the catalogue names it.
QString catalogued(const LocaleLanguage &language)
{
    QString identifier = language.identifier;
    const QStringList parts
        = identifier.replace(QLatin1Char('_'), QLatin1Char('-')).toLower().split(QLatin1Char('-'));
    if (parts.constFirst() != QLatin1String("zh")) {
        return parts.constFirst();
    }
    const bool isTraditional = std::any_of(parts.begin(), parts.end(), [](const QString &part) {
        return part == QLatin1String("hant") || part == QLatin1String("tw") || part == QLatin1String("hk");
    });
    return isTraditional || parts.size() == 1 ? traditional() : QStringLiteral("zh-Hans");
}

} // namespace

TranslationRoute translationRoute(
    const ModelCatalogue &catalogue, const LocaleLanguage &source, const LocaleLanguage &target)
{
    const QString from = catalogued(source);
    const QString to = catalogued(target);
    if (const auto legs = catalogue.translationLegs(from, to); !legs.isEmpty()) {
        return {legs, to == traditional() ? WrittenChinese::traditional : WrittenChinese::none};
    }
    if (to != traditional()) {
        return {};
    }
    const auto legs = catalogue.translationLegs(from, QStringLiteral("zh-Hans"));
    return {legs, legs.isEmpty() ? WrittenChinese::none : WrittenChinese::simplified};
}

ModelState routeState(const ModelStore &store, const TranslationRoute &route)
{
    ModelState worst = ModelState::installed;
    for (const ModelEntry *leg : route.legs) {
        switch (store.state(*leg)) {
        case ModelState::missing:
            return ModelState::missing;
        case ModelState::partial:
            worst = ModelState::partial;
            break;
        case ModelState::damaged:
            worst = worst == ModelState::partial ? worst : ModelState::damaged;
            break;
        case ModelState::installed:
            break;
        }
    }
    return worst;
}

} // namespace lumaphone
