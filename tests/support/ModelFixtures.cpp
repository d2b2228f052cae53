#include "support/ModelFixtures.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <archive.h>
#include <archive_entry.h>
#include <zlib.h>

#include <random>
#include <stdexcept>

namespace lumaphone::test {

namespace {

QJsonObject listed(const std::optional<qint64> &size, const QString &sha256)
{
    QJsonObject object;
    if (size) {
        object.insert("size", *size);
    }
    if (!sha256.isEmpty()) {
        object.insert("sha256", sha256);
    }
    return object;
}

QJsonArray listed(const QList<ModelFile> &files)
{
    QJsonArray array;
    for (const ModelFile &file : files) {
        QJsonObject object = listed(file.size, file.sha256);
        object.insert("role", file.role);
        object.insert("name", file.name);
        array.append(object);
    }
    return array;
}

QString nameOf(ModelCompression compression)
{
    switch (compression) {
    case ModelCompression::none:
        return "none";
    case ModelCompression::gzip:
        return "gzip";
    case ModelCompression::tarBz2:
        return "tar.bz2";
    }
    Q_UNREACHABLE();
}

QJsonObject listed(const ModelDownload &download)
{
    QJsonObject object = listed(download.size, download.sha256);
    object.insert("url", download.url.toString());
    object.insert("compression", nameOf(download.compression));
    object.insert("files", listed(download.files));
    return object;
}

QJsonObject listed(const ModelEntry &entry)
{
    QJsonArray downloads;
    for (const ModelDownload &download : entry.downloads) {
        downloads.append(listed(download));
    }
    QJsonObject object {{"id", entry.id},
        {"kind", entry.kind == ModelKind::speech ? "speech" : "translation"}, {"title", entry.title},
        {"languages", QJsonArray::fromStringList(entry.languages)},
        {"licence",
            QJsonObject {{"text", entry.licence.text}, {"mustBeAccepted", entry.licence.mustBeAccepted}}}};
    if (entry.isBundled) {
        object.insert("bundled", true);
        object.insert("files", listed(entry.bundledFiles));
    } else {
        object.insert("downloads", downloads);
    }
    return object;
}

} // namespace

QByteArray gzipped(const QByteArray &bytes)
{
    z_stream stream = {};
    ::deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    QByteArray packed(qsizetype(::deflateBound(&stream, uLong(bytes.size()))) + 64, 0);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = uInt(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = uInt(packed.size());
    if (::deflate(&stream, Z_FINISH) != Z_STREAM_END) {
        throw std::runtime_error("deflate");
    }
    packed.truncate(qsizetype(stream.total_out));
    ::deflateEnd(&stream);
    return packed;
}

QByteArray tarBz2(const QList<std::pair<QString, QByteArray>> &members)
{
    qsizetype size = 65536;
    for (const auto &member : members) {
        size += member.second.size() + 4096;
    }
    QByteArray packed(size + size / 8, 0);
    std::size_t used = 0;
    archive *writer = ::archive_write_new();
    ::archive_write_set_format_ustar(writer);
    ::archive_write_add_filter_bzip2(writer);
    ::archive_write_open_memory(writer, packed.data(), std::size_t(packed.size()), &used);
    for (const auto &[name, content] : members) {
        archive_entry *entry = ::archive_entry_new();
        ::archive_entry_set_pathname(entry, name.toUtf8().constData());
        ::archive_entry_set_perm(entry, 0644);
        if (content.startsWith("->")) {
            ::archive_entry_set_filetype(entry, AE_IFLNK);
            ::archive_entry_set_symlink(entry, content.mid(2).constData());
            ::archive_write_header(writer, entry);
        } else {
            ::archive_entry_set_filetype(entry, AE_IFREG);
            ::archive_entry_set_size(entry, content.size());
            ::archive_write_header(writer, entry);
            ::archive_write_data(writer, content.constData(), std::size_t(content.size()));
        }
        ::archive_entry_free(entry);
    }
    ::archive_write_close(writer);
    ::archive_write_free(writer);
    packed.truncate(qsizetype(used));
    return packed;
}

QString sha256Of(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString listedFile(const QString &role, const QString &name, const QByteArray &bytes)
{
    return QStringLiteral(R"({"role": "%1", "name": "%2", "size": %3, "sha256": "%4"})")
        .arg(role, name)
        .arg(bytes.size())
        .arg(sha256Of(bytes));
}

QByteArray listingOf(const QList<ModelEntry> &entries)
{
    QJsonArray models;
    for (const ModelEntry &entry : entries) {
        models.append(listed(entry));
    }
    return QJsonDocument(QJsonObject {{"models", models}}).toJson();
}

QByteArray noise(qsizetype size, unsigned seed)
{
    std::mt19937 random(seed);
    QByteArray bytes(size, 0);
    for (char &byte : bytes) {
        byte = char(random());
    }
    return bytes;
}

} // namespace lumaphone::test
