#include "speech/hosted/SpeechModelFiles.h"

#include "models/SpeechModels.h"
#include "speech/hosted/SpeechHostSession.h"

#include <QFile>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace lumaphone {

namespace {

const auto voiceDetectorRole = QStringLiteral("vad");
const auto networkRole = QStringLiteral("model");
const auto encoderRole = QStringLiteral("encoder");
const auto decoderRole = QStringLiteral("decoder");
const auto tokensRole = QStringLiteral("tokens");

/// The first speech model with files of these roles; null if there is none.
const ModelEntry *findEntry(const ModelCatalogue &catalogue, bool isBundled, const QStringList &roles)
{
    const QList<ModelEntry> &entries = catalogue.entries();
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const ModelEntry &entry) {
        return entry.kind == ModelKind::speech && entry.isBundled == isBundled
            && std::all_of(
                roles.begin(), roles.end(), [&entry](const QString &role) { return entry.hasRole(role); });
    });
    return found == entries.end() ? nullptr : &*found;
}

const ModelEntry *entryWith(const ModelCatalogue &catalogue, const QStringList &roles)
{
    return findEntry(catalogue, false, roles);
}

const ModelEntry *installableNetwork(const ModelCatalogue &catalogue)
{
    return entryWith(catalogue, {networkRole, tokensRole});
}

const ModelEntry *bundledNetwork(const ModelCatalogue &catalogue)
{
    return findEntry(catalogue, true, {encoderRole, decoderRole, tokensRole});
}

std::vector<SpokenLanguage> languagesOf(const ModelEntry *entry)
{
    std::vector<SpokenLanguage> languages;
    for (const QString &code : entry == nullptr ? QStringList() : entry->languages) {
        if (const auto language = spokenLanguageNamed(code)) {
            languages.push_back(*language);
        }
    }
    return languages;
}

std::string encoded(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// The program's own detector was measured: docs/speech-host.md. The publisher's value serves any other.
std::uint32_t thresholdFor(const ModelEntry &detector)
{
    return detector.isBundled ? 400 : 500;
}

/// What there is to install.
class Missing
{
public:
    void add(const ModelEntry &entry)
    {
        m_ids.append(entry.id);
        m_size += entry.knownDownloadSize().value_or(0);
    }

    QString hint() const
    {
        const QString size = QLocale(QLocale::Chinese, QLocale::Taiwan)
                                 .formattedDataSize(m_size, 0, QLocale::DataSizeSIFormat);
        return QStringLiteral(
            "請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install %1」（約 %2）。")
            .arg(m_ids.join(QLatin1Char(' ')), size);
    }

private:
    QStringList m_ids;
    qint64 m_size = 0;
};

} // namespace

std::vector<SpokenLanguage> installedModelLanguages(const ModelCatalogue &catalogue)
{
    return languagesOf(installableNetwork(catalogue));
}

std::vector<SpokenLanguage> bundledModelLanguages(const ModelCatalogue &catalogue)
{
    return languagesOf(bundledNetwork(catalogue));
}

std::variant<SpeechModelFiles, QString> installedSpeechModel(const ModelStore &store, CheckedFiles &checked)
{
    const ModelEntry *const network = installableNetwork(store.catalogue());
    if (network == nullptr) {
        return QStringLiteral("模型清單裡沒有語音辨識模型。");
    }
    const auto installed = store.installed(*network);
    const ModelEntry *const detector = voiceDetectorInPlace(store);
    if (!installed || detector == nullptr) {
        Missing missing;
        if (const ModelEntry *const installable = entryWith(store.catalogue(), {voiceDetectorRole});
            detector == nullptr && installable != nullptr) {
            missing.add(*installable);
        }
        if (!installed) {
            missing.add(*network);
        }
        return missing.hint();
    }
    return SpeechModelFiles {
        store.installed(*detector)->require(voiceDetectorRole),
        {host::NetworkKind::senseVoice, {encoded(installed->require(networkRole))},
            encoded(installed->require(tokensRole))},
        [&store, &checked, network, detector](const std::stop_token &stop) {
            store.requireIntact(*detector, {voiceDetectorRole}, checked, stop);
            store.requireIntact(*network, {networkRole, tokensRole}, checked, stop);
        },
        SpeechHostSession::reinstallTheModel(),
        thresholdFor(*detector),
    };
}

std::variant<SpeechModelFiles, QString> bundledEnglishModel(const ModelStore &store, CheckedFiles &checked)
{
    const ModelEntry *const entry = bundledNetwork(store.catalogue());
    const auto model = entry == nullptr ? std::nullopt : store.installed(*entry);
    if (!model) {
        return QStringLiteral("這個版本的 Lumaphone 沒有附上英文語音辨識模型，或它的檔案不完整。"
                              "請執行 packaging/install-speech-runtime 後重新建置，或改裝完整的套件。");
    }
    return SpeechModelFiles {
        model->require(voiceDetectorRole),
        {host::NetworkKind::moonshine,
            {encoded(model->require(encoderRole)), encoded(model->require(decoderRole))},
            encoded(model->require(tokensRole))},
        [&store, &checked, entry](const std::stop_token &stop) {
            store.requireIntact(
                *entry, {voiceDetectorRole, encoderRole, decoderRole, tokensRole}, checked, stop);
        },
        QStringLiteral("請重新安裝 Lumaphone。"),
        thresholdFor(*entry),
    };
}

} // namespace lumaphone
