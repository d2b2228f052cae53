#include "glossary/LumaphoneGlossaryStore.h"

#include "base/AtomicFile.h"
#include "base/ExportFile.h"
#include "base/Text.h"
#include "glossary/GlossaryImport.h"
#include "glossary/GlossaryYaml.h"
#include "glossary/LumaphoneGlossaryDocument.h"

#include <QSet>
#include <QThread>

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

/// Equal for sources that differ in nothing but case.
QString mergeKey(const QString &source)
{
    return text::canonicalForm(text::lowercased(source));
}

} // namespace

LumaphoneGlossaryStore::LumaphoneGlossaryStore(
    const QString &rootPath, FileRevealer revealFile, UuidGenerator makeUuid, QObject *parent)
    : QObject(parent)
    , m_rootPath(rootPath)
    , m_revealFile(std::move(revealFile))
    , m_makeUuid(std::move(makeUuid))
{
    load();
}

QList<LumaphoneGlossaryTerm> LumaphoneGlossaryStore::enabledTerms() const
{
    QList<LumaphoneGlossaryTerm> enabled;
    enabled.reserve(m_terms.size());
    std::copy_if(m_terms.begin(), m_terms.end(), std::back_inserter(enabled),
        [](const auto &term) { return term.isEnabled && !text::trimmed(term.source).isEmpty(); });
    return enabled;
}

QString LumaphoneGlossaryStore::glossaryPath() const
{
    return m_rootPath + QLatin1String("/glossary.json");
}

void LumaphoneGlossaryStore::load()
{
    m_lastLoadFailed = false;
    try {
        createFolder(m_rootPath);
        const auto bytes = readFile(glossaryPath());
        if (!bytes) {
            publish({}, m_lastErrorMessage);
            return;
        }
        publish(LumaphoneGlossaryDocument::decoded(json::parse(*bytes)).terms, std::nullopt);
    } catch (const LocalizedError &error) {
        m_lastLoadFailed = true;
        publish({}, error.errorDescription());
    }
}

void LumaphoneGlossaryStore::add(const LumaphoneGlossaryTerm &term)
{
    QList<LumaphoneGlossaryTerm> terms = m_terms;
    terms.append(term.cleaned());
    keep(terms);
}

void LumaphoneGlossaryStore::update(const LumaphoneGlossaryTerm &term)
{
    const auto found = std::find_if(
        m_terms.cbegin(), m_terms.cend(), [&](const auto &candidate) { return candidate.id == term.id; });
    if (found == m_terms.cend()) {
        return;
    }
    QList<LumaphoneGlossaryTerm> terms = m_terms;
    terms[found - m_terms.cbegin()] = term.cleaned();
    keep(terms);
}

void LumaphoneGlossaryStore::remove(const LumaphoneGlossaryTerm &term)
{
    QList<LumaphoneGlossaryTerm> terms = m_terms;
    if (terms.removeOne(term)) {
        keep(terms);
    }
}

void LumaphoneGlossaryStore::importTerms(const QString &path)
{
    importTerms(decodeTerms(path, m_makeUuid));
}

void LumaphoneGlossaryStore::importTerms(const QList<LumaphoneGlossaryTerm> &imported)
{
    QSet<QString> known;
    for (const LumaphoneGlossaryTerm &term : std::as_const(m_terms)) {
        known.insert(mergeKey(term.source));
    }
    QList<LumaphoneGlossaryTerm> terms = m_terms;
    for (const LumaphoneGlossaryTerm &term : imported) {
        const LumaphoneGlossaryTerm cleaned = term.cleaned();
        if (!known.contains(mergeKey(cleaned.source))) {
            terms.append(cleaned);
        }
    }
    keep(terms);
}

void LumaphoneGlossaryStore::exportYAML(const QString &path) const
{
    exportFile(path, encodeYAML(m_terms).toUtf8());
}

void LumaphoneGlossaryStore::openGlossaryFolder() const
{
    try {
        createFolder(m_rootPath);
    } catch (const FileError &) {
        // The viewer shows what there is.
    }
    m_revealFile(glossaryPath());
}

void LumaphoneGlossaryStore::keep(const QList<LumaphoneGlossaryTerm> &terms)
{
    try {
        save(terms);
        publish(terms, std::nullopt);
    } catch (const LocalizedError &error) {
        publish(terms, error.errorDescription());
    }
}

void LumaphoneGlossaryStore::save(const QList<LumaphoneGlossaryTerm> &terms)
{
    createFolder(m_rootPath);
    const QByteArray bytes = LumaphoneGlossaryDocument {terms}.encoded();
    if (m_lastLoadFailed) {
        keepAside(glossaryPath());
        m_lastLoadFailed = false;
    }
    replaceFile(glossaryPath(), bytes, Durability::Flushed);
}

void LumaphoneGlossaryStore::publish(
    const QList<LumaphoneGlossaryTerm> &terms, const std::optional<QString> &errorMessage)
{
    Q_ASSERT(thread() == QThread::currentThread());
    const bool termsChange = m_terms != terms;
    const bool messageChanges = m_lastErrorMessage != errorMessage;
    m_terms = terms;
    m_lastErrorMessage = errorMessage;
    if (termsChange) {
        emit termsChanged();
    }
    if (messageChanges) {
        emit lastErrorMessageChanged();
    }
}

} // namespace lumaphone
