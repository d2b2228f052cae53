#include "support/ToySpeechModel.h"

#include "models/ModelManifest.h"
#include "support/ToySpeech.h"

#include <QDir>
#include <QFile>
#include <QHash>

namespace lumaphone::test {

void installToySpeechModel(const ModelStore &store, const QString &id)
{
    static const QHash<QString, QString> toys {
        {QStringLiteral("vad"), QStringLiteral("toy-vad.onnx")},
        {QStringLiteral("model"), QStringLiteral("toy-sense.onnx")},
        {QStringLiteral("tokens"), QStringLiteral("tokens.txt")},
        {QStringLiteral("licence"), QStringLiteral("README.md")},
    };
    const ModelEntry &entry = store.catalogue().entry(id);
    const QString folder = store.modelFolder(entry);
    QDir().mkpath(folder);
    ModelManifest manifest;
    manifest.installedAt = QDateTime::currentDateTimeUtc();
    for (const ModelFile &file : entry.files()) {
        const QString path = folder + QLatin1Char('/') + file.name;
        if (!QFile::copy(toySpeechFile(toys.value(file.role)), path)) {
            qFatal("cannot install %s", qPrintable(path));
        }
        manifest.files.append({file.name, QFile(path).size(), {}});
    }
    manifest.write(folder);
}

void installToySpeechModels(const ModelStore &store)
{
    installToySpeechModel(store, QStringLiteral("silero-vad"));
    installToySpeechModel(store, QStringLiteral("sense-voice"));
}

} // namespace lumaphone::test
