#include "support/ToySpeechModel.h"

#include "models/FileDigest.h"
#include "models/ModelManifest.h"
#include "support/ModelFixtures.h"
#include "support/ToySpeech.h"

#include <QDir>
#include <QFile>
#include <QHash>

namespace lumaphone::test {

namespace {

QString toyFor(const ModelFile &file)
{
    static const QHash<QString, QString> toys {
        {QStringLiteral("vad"), QStringLiteral("toy-vad.onnx")},
        {QStringLiteral("model"), QStringLiteral("toy-sense.onnx")},
        {QStringLiteral("tokens"), QStringLiteral("tokens.txt")},
        {QStringLiteral("licence"), QStringLiteral("README.md")},
    };
    return toySpeechFile(toys.value(file.role));
}

} // namespace

QByteArray toySpeechListing()
{
    const ModelCatalogue own = ModelCatalogue::builtIn();
    QList<ModelEntry> toys {own.entry("silero-vad"), own.entry("sense-voice")};
    for (ModelEntry &entry : toys) {
        for (ModelDownload &download : entry.downloads) {
            for (ModelFile &file : download.files) {
                const FileDigest digest = digestOf(toyFor(file));
                file.size = digest.size;
                file.sha256 = digest.sha256;
            }
        }
    }
    return listingOf(toys);
}

ModelCatalogue toySpeechCatalogue()
{
    return ModelCatalogue::fromJson(toySpeechListing(), "toy speech");
}

void installToySpeechModel(const ModelStore &store, const QString &id)
{
    const ModelEntry &entry = store.catalogue().entry(id);
    const QString folder = store.modelFolder(entry);
    QDir().mkpath(folder);
    ModelManifest manifest;
    manifest.installedAt = QDateTime::currentDateTimeUtc();
    for (const ModelFile &file : entry.files()) {
        const QString path = folder + QLatin1Char('/') + file.name;
        if (!QFile::copy(toyFor(file), path)) {
            qFatal("cannot install %s", qPrintable(path));
        }
        manifest.files.append({file.name, *file.size, file.sha256});
    }
    manifest.write(folder);
}

void installToySpeechModels(const ModelStore &store)
{
    installToySpeechModel(store, QStringLiteral("silero-vad"));
    installToySpeechModel(store, QStringLiteral("sense-voice"));
}

} // namespace lumaphone::test
