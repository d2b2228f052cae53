#include "platform/linux/InstalledSpeechModel.h"

#include <QFile>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace lumaphone {

namespace {

const auto voiceDetectorRole = QStringLiteral("vad");
const auto networkRole = QStringLiteral("model");
const auto tokensRole = QStringLiteral("tokens");

bool hasRole(const ModelEntry &entry, const QString &role)
{
    const QList<ModelFile> files = entry.files();
    return std::any_of(
        files.begin(), files.end(), [&role](const ModelFile &file) { return file.role == role; });
}

const ModelEntry *speechEntry(const ModelCatalogue &catalogue, const QString &role)
{
    for (const ModelEntry &entry : catalogue.entries()) {
        if (entry.kind == ModelKind::speech && hasRole(entry, role)) {
            return &entry;
        }
    }
    return nullptr;
}

std::string encoded(const QString &path)
{
    return QFile::encodeName(path).toStdString();
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

std::variant<SpeechModelFiles, QString> installedSpeechModel(const ModelStore &store)
{
    const ModelEntry *const voiceDetector = speechEntry(store.catalogue(), voiceDetectorRole);
    const ModelEntry *const network = speechEntry(store.catalogue(), networkRole);
    if (voiceDetector == nullptr || network == nullptr || !hasRole(*network, tokensRole)) {
        return QStringLiteral("模型清單裡沒有語音辨識模型。");
    }
    const auto installedDetector = store.installed(*voiceDetector);
    const auto installedNetwork = store.installed(*network);
    if (installedDetector && installedNetwork) {
        return SpeechModelFiles {installedDetector->require(voiceDetectorRole),
            {host::NetworkKind::senseVoice, {encoded(installedNetwork->require(networkRole))},
                encoded(installedNetwork->require(tokensRole))}};
    }
    Missing missing;
    if (!installedDetector) {
        missing.add(*voiceDetector);
    }
    if (!installedNetwork) {
        missing.add(*network);
    }
    return missing.hint();
}

std::variant<SpeechModelFiles, QString> bundledEnglishModel(const BundleResources &resources)
{
    const auto folder = resources.path(QStringLiteral("english-speech"));
    if (!folder) {
        return QStringLiteral("這個版本的 Lumaphone 沒有附上英文語音辨識模型。"
                              "請執行 packaging/install-speech-runtime 後重新建置，或改裝完整的套件。");
    }
    const auto file = [&folder](const char *name) {
        return *folder + QLatin1Char('/') + QLatin1String(name);
    };
    return SpeechModelFiles {file("voice-detector.onnx"),
        {host::NetworkKind::moonshine, {encoded(file("encoder.onnx")), encoded(file("decoder.onnx"))},
            encoded(file("tokens.txt"))}};
}

} // namespace lumaphone
