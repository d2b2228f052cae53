#include "support/ServedModels.h"

#include "support/BundledModel.h"
#include "support/FileServer.h"
#include "support/ModelFixtures.h"

namespace lumaphone::test {

ModelCatalogue servedModels(FileServer &server, const std::function<qsizetype(const ModelEntry &)> &size)
{
    QList<ModelEntry> models = catalogueWithSmallBundle().entries();
    for (ModelEntry &entry : models) {
        if (entry.isBundled) {
            continue;
        }
        const QString path = QStringLiteral("/%1.bin").arg(entry.id);
        const QByteArray bytes(size(entry), 'm');
        server.put(path, bytes);
        const ModelFile file {
            entry.files().constFirst().role, entry.id + ".bin", bytes.size(), sha256Of(bytes)};
        entry.downloads
            = {{QUrl(server.url(path)), ModelCompression::none, bytes.size(), file.sha256, {file}}};
    }
    return ModelCatalogue::fromJson(listingOf(models), "served models");
}

} // namespace lumaphone::test
