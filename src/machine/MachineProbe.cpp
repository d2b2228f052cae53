#include "machine/MachineProbe.h"

#include "language/TranslationLanguages.h"
#include "platform/desktop/SessionBusProbe.h"
#include "platform/display/LayerShellOffer.h"
#include "platform/display/WindowSystem.h"
#include "platform/sound/SoundServerProbe.h"

#include <QSysInfo>

#include <algorithm>

namespace lumaphone {

namespace {

void takeTranslation(LanguageFacts &facts, const QString &source, const ModelStore &models)
{
    const QString target = translationTargetIdentifier();
    facts.translationModels = source + QLatin1Char('-') + target;
    const QList<const ModelEntry *> legs = models.catalogue().translationLegs(source, target);
    facts.isTranslated = !legs.isEmpty();
    for (const ModelEntry *leg : legs) {
        if (models.state(*leg) != ModelState::installed) {
            facts.isTranslated = false;
            facts.translationSize += leg->knownDownloadSize().value_or(0);
        }
    }
}

LanguageFacts languageFacts(
    AppleSystemSpeechLanguage language, const ModelStore &models, const LocalSpeechFramework &speech)
{
    const QString locale = localeIdentifier(language);
    LanguageFacts facts;
    facts.name = displayName(language);
    facts.recogniser = speech.recogniserName(locale);
    if (facts.recogniser.isEmpty()) {
        facts.recogniserHint = speech.installationHint(locale);
    }
    facts.needsTranslation = needsTranslation(language);
    if (facts.needsTranslation) {
        takeTranslation(facts, translationSourceIdentifier(language), models);
    }
    return facts;
}

ModelFacts::State stateOf(const ModelEntry &entry, const ModelStore &models)
{
    switch (models.state(entry)) {
    case ModelState::missing:
        return ModelFacts::State::missing;
    case ModelState::partial:
        return ModelFacts::State::partial;
    case ModelState::installed:
        return entry.isBundled ? ModelFacts::State::bundled : ModelFacts::State::installed;
    case ModelState::damaged:
        return ModelFacts::State::damaged;
    }
    Q_UNREACHABLE();
}

} // namespace

MachineFacts probeMachine(
    const QString &program, const ModelStore &models, const LocalSpeechFramework &speech)
{
    MachineFacts facts;
    facts.program = program;
    facts.system = QStringLiteral("%1，%2 %3，%4")
                       .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                           QSysInfo::currentCpuArchitecture());
    facts.toolkit = QStringLiteral("Qt %1").arg(QString::fromLatin1(qVersion()));
    facts.sound = probeSoundServer({});
    for (const auto language : recognitionCandidates(AppleSystemSpeechLanguage::automatic)) {
        facts.languages.append(languageFacts(language, models, speech));
    }
    for (const ModelEntry &entry : models.catalogue().entries()) {
        facts.models.append({entry.id, entry.title, stateOf(entry, models), entry.knownSize()});
    }
    const SessionBusProbe bus(QDBusConnection::sessionBus());
    facts.keyring = bus.keyring();
    facts.portals = bus.portals();
    facts.display = displayFacts(QProcessEnvironment::systemEnvironment(), &isLayerShellOffered);
    return facts;
}

} // namespace lumaphone
