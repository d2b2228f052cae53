#include "models/ModelManifest.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "base/Record.h"

#include <algorithm>

namespace lumaphone {

namespace {

QString manifestPath(const QString &modelFolder)
{
    return modelFolder + QStringLiteral("/installed.json");
}

ModelManifest manifestFrom(const json::Value &object)
{
    ModelManifest manifest;
    for (const json::Value &file : json::member(object, "files")) {
        manifest.files.append(
            {json::text(file, "name"), json::integer(file, "size"), json::text(file, "sha256")});
    }
    manifest.installedAt = json::date(object, "installedAt");
    manifest.isDamaged = json::boolean(object, "isDamaged");
    return manifest;
}

} // namespace

const RecordedFile *ModelManifest::find(const QString &name) const
{
    const auto found = std::find_if(
        files.begin(), files.end(), [&name](const RecordedFile &file) { return file.name == name; });
    return found == files.end() ? nullptr : &*found;
}

std::optional<ModelManifest> ModelManifest::read(const QString &modelFolder)
{
    try {
        const std::optional<QByteArray> bytes = readFile(manifestPath(modelFolder));
        return bytes ? std::optional(manifestFrom(json::parse(*bytes))) : std::nullopt;
    } catch (const LocalizedError &) {
        return std::nullopt;
    }
}

void ModelManifest::write(const QString &modelFolder) const
{
    json::Value list = json::Value::array();
    for (const RecordedFile &file : files) {
        list.push_back({{"name", json::fromText(file.name)}, {"size", file.size},
            {"sha256", json::fromText(file.sha256)}});
    }
    const json::Value object {
        {"files", list}, {"isDamaged", isDamaged}, {"installedAt", json::fromText(iso8601Text(installedAt))}};
    replaceFile(manifestPath(modelFolder), json::pretty(object), Durability::flushed);
}

} // namespace lumaphone
