#include "support/ServedModels.h"

#include "support/FileServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaphone::test {

namespace {

QJsonObject served(const ModelEntry &entry, const QString &url, qsizetype size)
{
    const QJsonObject file {{"role", entry.files().constFirst().role}, {"name", entry.id + ".bin"}};
    const QJsonObject download {
        {"url", url}, {"compression", "none"}, {"size", size}, {"files", QJsonArray {file}}};
    return {{"id", entry.id}, {"kind", entry.kind == ModelKind::speech ? "speech" : "translation"},
        {"title", entry.title}, {"languages", QJsonArray::fromStringList(entry.languages)},
        {"licence",
            QJsonObject {{"text", entry.licence.text}, {"mustBeAccepted", entry.licence.mustBeAccepted}}},
        {"downloads", QJsonArray {download}}};
}

} // namespace

ModelCatalogue servedModels(FileServer &server, const std::function<qsizetype(const ModelEntry &)> &size)
{
    QJsonArray models;
    const ModelCatalogue own = ModelCatalogue::builtIn();
    for (const ModelEntry &entry : own.entries()) {
        const QString path = QStringLiteral("/%1.bin").arg(entry.id);
        server.put(path, QByteArray(size(entry), 'm'));
        models.append(served(entry, server.url(path), size(entry)));
    }
    return ModelCatalogue::fromJson(
        QJsonDocument(QJsonObject {{"models", models}}).toJson(), "served models");
}

} // namespace lumaphone::test
