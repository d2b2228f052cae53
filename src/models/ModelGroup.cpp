#include "models/ModelGroup.h"

#include "language/SpokenLanguage.h"
#include "language/TranslationLanguages.h"
#include "models/SpeechModels.h"

#include <algorithm>

namespace lumaphone {

namespace {

QString languageName(const QString &code)
{
    const auto language = spokenLanguageNamed(code);
    return language ? displayName(*language) : code;
}

bool shareALanguage(const ModelEntry &one, const ModelEntry &other)
{
    return std::any_of(one.languages.begin(), one.languages.end(),
        [&other](const QString &language) { return other.languages.contains(language); });
}

/// The recogniser, and the models that help it. What comes with the program is whole.
QList<const ModelEntry *> speechEntries(const ModelEntry &recognizer, const ModelCatalogue &catalogue)
{
    QList<const ModelEntry *> entries {&recognizer};
    for (const ModelEntry &entry : catalogue.entries()) {
        const bool helps = entry.kind == ModelKind::speech && !isRecognizer(entry);
        if (helps && !recognizer.isBundled && shareALanguage(entry, recognizer)) {
            entries.append(&entry);
        }
    }
    return entries;
}

} // namespace

QList<ModelGroup> modelGroups(const ModelCatalogue &catalogue)
{
    const QString target = translationTargetIdentifier();
    QList<ModelGroup> groups;
    for (const ModelEntry &entry : catalogue.entries()) {
        if (entry.kind == ModelKind::speech) {
            if (isRecognizer(entry)) {
                groups.append({entry.kind, entry.title, entry.languages, speechEntries(entry, catalogue)});
            }
            continue;
        }
        const QString &source = entry.languages.constFirst();
        const auto legs = catalogue.translationLegs(source, target);
        if (!legs.isEmpty() && legs.constFirst() == &entry) {
            groups.append(
                {entry.kind, QStringLiteral("%1翻譯成繁體中文").arg(languageName(source)), {source}, legs});
        }
    }
    return groups;
}

QList<const ModelEntry *> neededModels(const ModelGroup &group, const ModelStore &store)
{
    QList<const ModelEntry *> needed = group.entries;
    needed.removeIf([&store](const ModelEntry *entry) {
        if (isRecognizer(*entry) || !entry->hasRole(QStringLiteral("vad"))) {
            return false;
        }
        const ModelEntry *const inPlace = voiceDetectorInPlace(store);
        return inPlace != nullptr && inPlace != entry;
    });
    return needed;
}

ModelState groupState(const ModelGroup &group, const ModelStore &store)
{
    ModelState worst = ModelState::installed;
    for (const ModelEntry *entry : neededModels(group, store)) {
        const ModelState state = store.state(*entry);
        if (state == ModelState::installed || worst == ModelState::damaged) {
            continue;
        }
        worst = state == ModelState::damaged || worst == ModelState::installed ? state : worst;
        worst = state == ModelState::partial ? state : worst;
    }
    return worst;
}

} // namespace lumaphone
