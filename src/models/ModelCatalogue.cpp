#include "models/ModelCatalogue.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "language/SpokenLanguage.h"
#include "models/ModelError.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <utility>

namespace lumaphone {

namespace {

// Whatever a catalogue says, sums of sizes are numbers.
constexpr qint64 mostListedBytes = qint64(1) << 50;
constexpr qsizetype mostListedFiles = 4096;

/// Between languages without models of their own.
const QString &pivotLanguage()
{
    static const QString english = languageCode(SpokenLanguage::english);
    return english;
}

[[noreturn]] void reject(const QString &text)
{
    throw json::DecodingError(text);
}

QString existsTwice(const QString &id)
{
    return QStringLiteral("有兩個 %1").arg(id);
}

/// A name that stays inside the folder it is put into.
QString plainName(const QString &name)
{
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')) || name.contains(QLatin1Char('/'))
        || name.contains(QChar(0))) {
        reject(QStringLiteral("「%1」不能當作檔名").arg(name));
    }
    return name;
}

QString sha256(const json::Value &object)
{
    if (!json::has(object, "sha256")) {
        return {};
    }
    QString digits = json::text(object, "sha256").toLower();
    static const QRegularExpression hexadecimal(QStringLiteral("\\A[0-9a-f]{64}\\z"));
    if (!hexadecimal.match(digits).hasMatch()) {
        reject(QStringLiteral("「%1」不是完整的 SHA-256（64 個十六進位數字）").arg(digits));
    }
    return digits;
}

std::optional<qint64> size(const json::Value &object)
{
    if (!json::has(object, "size")) {
        return std::nullopt;
    }
    const qint64 bytes = json::integer(object, "size");
    if (bytes < 0 || bytes > mostListedBytes) {
        reject(QStringLiteral("size %1").arg(bytes));
    }
    return bytes;
}

template<typename Read> auto listOf(const json::Value &object, const char *key, Read read)
{
    const json::Value &array = json::member(object, key);
    if (!array.is_array() || array.empty()) {
        reject(QStringLiteral("「%1」必須是有內容的陣列").arg(QLatin1String(key)));
    }
    QList<decltype(read(array))> list;
    for (const json::Value &element : array) {
        list.append(read(element));
    }
    return list;
}

ModelFile file(const json::Value &object)
{
    return {json::text(object, "role"), plainName(json::text(object, "name")), size(object), sha256(object)};
}

/// Models are trusted by their hashes alone.
void demandHash(const ModelFile &file)
{
    if (file.sha256.isEmpty()) {
        reject(QStringLiteral("%1 缺少完整的 SHA-256").arg(file.name));
    }
}

ModelFile bundledFile(const json::Value &object)
{
    ModelFile bundled = file(object);
    demandHash(bundled);
    if (!bundled.size) {
        reject(QStringLiteral("%1 缺少 size").arg(bundled.name));
    }
    return bundled;
}

ModelCompression compression(const QString &name)
{
    if (name == QLatin1String("none")) {
        return ModelCompression::none;
    }
    if (name == QLatin1String("gzip")) {
        return ModelCompression::gzip;
    }
    if (name == QLatin1String("tar.bz2")) {
        return ModelCompression::tarBz2;
    }
    reject(QStringLiteral("compression「%1」").arg(name));
}

ModelDownload download(const json::Value &object)
{
    ModelDownload download {QUrl(json::text(object, "url"), QUrl::StrictMode),
        compression(json::text(object, "compression")), size(object), sha256(object),
        listOf(object, "files", &file)};
    const QString scheme = download.url.scheme();
    if (!download.url.isValid() || (scheme != QLatin1String("https") && scheme != QLatin1String("http"))) {
        reject(QStringLiteral("url「%1」").arg(json::text(object, "url")));
    }
    plainName(download.name());
    if (download.compression != ModelCompression::tarBz2 && download.files.size() != 1) {
        reject(QStringLiteral("%1 只能有一個檔案").arg(download.name()));
    }
    const bool isKnownArchive
        = download.compression == ModelCompression::tarBz2 && !download.sha256.isEmpty();
    for (const ModelFile &file : std::as_const(download.files)) {
        if (!file.isLicence() || !isKnownArchive) {
            demandHash(file);
        }
    }
    return download;
}

ModelEntry entry(const json::Value &object)
{
    ModelEntry entry;
    entry.id = plainName(json::text(object, "id"));
    const QString kind = json::text(object, "kind");
    if (kind != QLatin1String("translation") && kind != QLatin1String("speech")) {
        reject(QStringLiteral("kind「%1」").arg(kind));
    }
    entry.kind = kind == QLatin1String("translation") ? ModelKind::translation : ModelKind::speech;
    entry.title = json::text(object, "title");
    entry.languages = listOf(object, "languages", [](const json::Value &value) {
        if (!value.is_string()) {
            reject(QStringLiteral("「languages」必須是文字的陣列"));
        }
        return QString::fromStdString(value.get<std::string>());
    });
    if (entry.kind == ModelKind::translation && entry.languages.size() != 2) {
        reject(QStringLiteral("%1 必須有兩個語言").arg(entry.id));
    }
    const json::Value &licence = json::member(object, "licence");
    entry.licence = {json::text(licence, "text"), json::boolean(licence, "mustBeAccepted")};
    entry.isBundled = json::has(object, "bundled") && json::boolean(object, "bundled");
    if (entry.isBundled) {
        entry.bundledFiles = listOf(object, "files", &bundledFile);
    } else {
        entry.downloads = listOf(object, "downloads", &download);
    }

    const QList<ModelFile> files = entry.files();
    if (entry.downloads.size() + files.size() > mostListedFiles) {
        reject(QStringLiteral("%1 有太多檔案").arg(entry.id));
    }
    QSet<QString> names;
    for (const ModelFile &file : files) {
        if (names.contains(file.name)) {
            reject(QStringLiteral("%1 有兩個 %2").arg(entry.id, file.name));
        }
        names.insert(file.name);
    }
    return entry;
}

} // namespace

QString ModelDownload::name() const
{
    return url.fileName();
}

QList<ModelFile> ModelEntry::files() const
{
    QList<ModelFile> all = bundledFiles;
    for (const ModelDownload &download : downloads) {
        all.append(download.files);
    }
    return all;
}

bool ModelEntry::hasRole(const QString &role) const
{
    const QList<ModelFile> all = files();
    return std::any_of(all.begin(), all.end(), [&role](const ModelFile &file) { return file.role == role; });
}

qint64 ModelEntry::knownSize() const
{
    const QList<ModelFile> all = files();
    return std::accumulate(all.begin(), all.end(), qint64(0),
        [](qint64 sum, const ModelFile &file) { return sum + file.size.value_or(0); });
}

std::optional<qint64> ModelEntry::knownDownloadSize() const
{
    qint64 total = 0;
    for (const ModelDownload &download : downloads) {
        if (!download.size) {
            return std::nullopt;
        }
        total += *download.size;
    }
    return total;
}

ModelCatalogue::ModelCatalogue(QList<ModelEntry> entries)
    : m_entries(std::move(entries))
{
}

ModelCatalogue ModelCatalogue::builtIn()
{
    QFile file(QStringLiteral(":/lumaphone/models.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        throw ModelError(ModelError::Case::catalogueUnreadable, file.fileName(), file.errorString());
    }
    return fromJson(file.readAll(), file.fileName());
}

ModelCatalogue ModelCatalogue::configured()
{
    const QString path = qEnvironmentVariable("LUMAPHONE_MODEL_CATALOGUE");
    if (path.isEmpty()) {
        return builtIn();
    }
    ModelCatalogue catalogue = fromFile(path);
    const ModelCatalogue own = builtIn();
    for (const ModelEntry &entry : own.m_entries) {
        if (!entry.isBundled) {
            continue;
        }
        if (catalogue.find(entry.id)) {
            throw ModelError(ModelError::Case::catalogueUnreadable, path, existsTwice(entry.id));
        }
        catalogue.m_entries.append(entry);
    }
    return catalogue;
}

ModelCatalogue ModelCatalogue::fromFile(const QString &path)
{
    const std::optional<QByteArray> bytes = readFile(path);
    if (!bytes) {
        throw ModelError(ModelError::Case::fileMissing, path);
    }
    return fromJson(*bytes, path);
}

ModelCatalogue ModelCatalogue::fromJson(const QByteArray &bytes, const QString &name)
{
    try {
        ModelCatalogue catalogue(listOf(json::parse(bytes), "models", &lumaphone::entry));
        QSet<QString> ids;
        for (const ModelEntry &entry : catalogue.m_entries) {
            if (ids.contains(entry.id)) {
                reject(existsTwice(entry.id));
            }
            ids.insert(entry.id);
        }
        return catalogue;
    } catch (const json::DecodingError &error) {
        throw ModelError(ModelError::Case::catalogueUnreadable, name, error.errorDescription());
    }
}

const ModelEntry *ModelCatalogue::find(const QString &id) const
{
    const auto found = std::find_if(
        m_entries.begin(), m_entries.end(), [&id](const ModelEntry &entry) { return entry.id == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

const ModelEntry &ModelCatalogue::entry(const QString &id) const
{
    if (const ModelEntry *found = find(id)) {
        return *found;
    }
    throw ModelError(ModelError::Case::unknownModel, id);
}

const ModelEntry *ModelCatalogue::translation(const QString &source, const QString &target) const
{
    const QStringList languages {source, target};
    const auto found
        = std::find_if(m_entries.begin(), m_entries.end(), [&languages](const ModelEntry &entry) {
              return entry.kind == ModelKind::translation && entry.languages == languages;
          });
    return found == m_entries.end() ? nullptr : &*found;
}

QList<const ModelEntry *> ModelCatalogue::translationLegs(const QString &source, const QString &target) const
{
    if (const ModelEntry *direct = translation(source, target)) {
        return {direct};
    }
    const ModelEntry *first = translation(source, pivotLanguage());
    const ModelEntry *second = translation(pivotLanguage(), target);
    if (first == nullptr || second == nullptr) {
        return {};
    }
    return {first, second};
}

} // namespace lumaphone
