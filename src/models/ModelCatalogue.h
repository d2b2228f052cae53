#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace lumaphone {

enum class ModelKind { translation, speech };

/// What has been done to a file before it was published.
enum class ModelCompression { none, gzip, tarBz2 };

/// One file of an installed model.
struct ModelFile
{
    QString role; ///< what it is to its engine, such as "model", "vocabulary", "shortlist", "tokens"
    QString name; ///< its name in the model's folder
    std::optional<qint64> size; ///< bytes, if known beforehand
    QString sha256; ///< 64 lower-case hexadecimal digits; empty only for a licence, see ModelDownload::files

    /// Whether it is a text for the user, which no engine reads.
    bool isLicence() const { return role == QLatin1String("licence"); }
};

/// One thing to fetch: a file, a compressed file, or an archive with several.
struct ModelDownload
{
    QUrl url;
    ModelCompression compression = ModelCompression::none;
    std::optional<qint64> size; ///< of what is fetched, if known
    QString sha256; ///< of what is fetched, as in ModelFile; empty if not known beforehand
    /// Exactly one unless it is an archive, whose other members are left out. The hash of each is known, but
    /// for that of a licence in an archive whose own hash is known.
    QList<ModelFile> files;

    /// The last part of the address.
    QString name() const;
};

struct ModelLicence
{
    QString text; ///< for the user, one paragraph
    bool mustBeAccepted = false; ///< before anything is fetched
};

/// A model that the user can install, or that comes with the program.
struct ModelEntry
{
    QString id; ///< such as "ja-en"; also the name of its folder
    ModelKind kind = ModelKind::translation;
    QString title; ///< for the user
    QStringList languages; ///< of speech: those it understands; of translation: source and target
    ModelLicence licence;
    QList<ModelDownload> downloads; ///< none of a bundled one
    bool isBundled = false; ///< part of the program: it is neither installed nor removed
    QList<ModelFile> bundledFiles; ///< of which size and hash are known

    QList<ModelFile> files() const;
    bool hasRole(const QString &role) const;
    /// Bytes on the disk, as far as they are known.
    qint64 knownSize() const;
    /// Bytes to fetch, as far as they are known.
    std::optional<qint64> knownDownloadSize() const;
};

/// The models that are known, in the order in which they are listed.
class ModelCatalogue
{
public:
    /// The program's own.
    static ModelCatalogue builtIn();
    /// The one that the environment variable LUMAPHONE_MODEL_CATALOGUE names with the program's own bundled
    /// models behind it, or else the program's own. Throws ModelError, FileError.
    static ModelCatalogue configured();
    /// One of somebody else's making. Throws ModelError, FileError.
    static ModelCatalogue fromFile(const QString &path);
    /// `name` is for errors. Throws ModelError.
    static ModelCatalogue fromJson(const QByteArray &bytes, const QString &name);

    const QList<ModelEntry> &entries() const { return m_entries; }
    const ModelEntry *find(const QString &id) const; ///< null if there is none
    /// Throws ModelError (unknownModel).
    const ModelEntry &entry(const QString &id) const;
    /// The model that translates directly; null if there is none. Languages are compared as they stand.
    const ModelEntry *translation(const QString &source, const QString &target) const;
    /// The models that lead from one language to another, directly or through English; empty if none do.
    QList<const ModelEntry *> translationLegs(const QString &source, const QString &target) const;

private:
    explicit ModelCatalogue(QList<ModelEntry> entries);

    QList<ModelEntry> m_entries;
};

} // namespace lumaphone
