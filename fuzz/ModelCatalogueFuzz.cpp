// A catalogue of models of somebody else's making.

#include "Require.h"
#include "models/ModelCatalogue.h"
#include "models/ModelError.h"

#include <QSet>

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace lumaphone;

namespace {

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/'));
}

bool isHash(const QString &text)
{
    return text.size() == 64 && std::all_of(text.begin(), text.end(), [](QChar digit) {
        return (digit >= QLatin1Char('0') && digit <= QLatin1Char('9'))
            || (digit >= QLatin1Char('a') && digit <= QLatin1Char('f'));
    });
}

void checkFiles(const ModelEntry &entry)
{
    QSet<QString> names;
    for (const ModelFile &file : entry.files()) {
        fuzz::require(isPlainName(file.name), "a file stays in the model's folder");
        fuzz::require(!names.contains(file.name), "a name is given once");
        fuzz::require(isHash(file.sha256) || (file.sha256.isEmpty() && file.isLicence()), "a hash is known");
        fuzz::require(file.size.value_or(0) >= 0, "a size is a size");
        names.insert(file.name);
    }
    for (const ModelDownload &download : entry.downloads) {
        const bool isWhole = std::all_of(download.files.begin(), download.files.end(),
            [](const ModelFile &file) { return !file.sha256.isEmpty(); });
        fuzz::require(isWhole || isHash(download.sha256), "nothing is taken unseen");
        fuzz::require(isPlainName(download.name()), "what is fetched has a name");
        fuzz::require(
            download.url.scheme() == QLatin1String("https") || download.url.scheme() == QLatin1String("http"),
            "it comes from the web");
    }
}

void checkEntries(const ModelCatalogue &catalogue)
{
    for (const ModelEntry &entry : catalogue.entries()) {
        fuzz::require(isPlainName(entry.id), "a model has a folder of its own");
        fuzz::require(&catalogue.entry(entry.id) == &entry, "a model is found by its name");
        fuzz::require(entry.knownSize() >= 0 && entry.knownDownloadSize().value_or(0) >= 0, "sums are sizes");
        checkFiles(entry);
        if (entry.kind == ModelKind::translation) {
            const auto legs = catalogue.translationLegs(entry.languages.first(), entry.languages.last());
            fuzz::require(!legs.isEmpty() && legs.size() <= 2, "a translation is found");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        checkEntries(ModelCatalogue::fromJson(bytes, QStringLiteral("catalogue")));
    } catch (const ModelError &error) {
        fuzz::require(
            error.errorCase() == ModelError::Case::catalogueUnreadable, "an error is that of a catalogue");
        fuzz::require(!error.errorDescription().isEmpty(), "an error says something");
    }
    return 0;
}
