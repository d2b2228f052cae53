#include "glossary/LumaphoneGlossaryStore.h"

#include "base/AtomicFile.h"
#include "base/ExportFile.h"
#include "base/FileLock.h"
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

/// Of terms with one identity all but the first get another, the same at every reading.
QList<LumaphoneGlossaryTerm> withOwnIdentities(QList<LumaphoneGlossaryTerm> terms)
{
    QSet<QUuid> taken;
    for (LumaphoneGlossaryTerm &term : terms) {
        const QUuid given = term.id;
        for (int attempt = 2; taken.contains(term.id); ++attempt) {
            term.id = QUuid::createUuidV5(given, QString::number(attempt));
        }
        taken.insert(term.id);
    }
    return terms;
}

/// Where the term that was `wanted` stands, also if its identity or its fields were changed elsewhere; -1 if
/// it is gone.
qsizetype indexOf(const LumaphoneGlossaryTerm &wanted, const QList<LumaphoneGlossaryTerm> &terms)
{
    const auto isSameButForIdentity = [&wanted](LumaphoneGlossaryTerm candidate) {
        candidate.id = wanted.id;
        return candidate == wanted;
    };
    const auto hasItsIdentity = [&wanted](const LumaphoneGlossaryTerm &candidate) {
        return candidate.id == wanted.id;
    };
    auto found = std::find(terms.cbegin(), terms.cend(), wanted);
    if (found == terms.cend()) {
        found = std::find_if(terms.cbegin(), terms.cend(), isSameButForIdentity);
    }
    if (found == terms.cend()) {
        found = std::find_if(terms.cbegin(), terms.cend(), hasItsIdentity);
    }
    return found == terms.cend() ? -1 : found - terms.cbegin();
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
    m_unsaved.clear();
    m_knownBytes.reset();
    try {
        createFolder(m_rootPath);
        const auto bytes = readFile(glossaryPath());
        if (!bytes) {
            publish({}, m_lastErrorMessage);
            return;
        }
        publish(
            withOwnIdentities(LumaphoneGlossaryDocument::decoded(json::parse(*bytes)).terms), std::nullopt);
        m_knownBytes = bytes;
    } catch (const LocalizedError &error) {
        publish({}, error.errorDescription());
    }
}

void LumaphoneGlossaryStore::refresh()
{
    if (const Reading reading = read(); reading.isOfOthers && m_unsaved.empty()) {
        load();
    }
}

void LumaphoneGlossaryStore::add(const LumaphoneGlossaryTerm &term)
{
    make([cleaned = term.cleaned()](Terms &terms) {
        terms.append(cleaned);
        return true;
    });
}

void LumaphoneGlossaryStore::update(const LumaphoneGlossaryTerm &term)
{
    make([cleaned = term.cleaned()](Terms &terms) {
        const auto found = std::find_if(
            terms.begin(), terms.end(), [&](const auto &candidate) { return candidate.id == cleaned.id; });
        if (found == terms.end()) {
            return false;
        }
        *found = cleaned;
        return true;
    });
}

void LumaphoneGlossaryStore::replace(const LumaphoneGlossaryTerm &former, const LumaphoneGlossaryTerm &term)
{
    make([former, cleaned = term.cleaned()](Terms &terms) {
        const qsizetype index = indexOf(former, terms);
        if (index < 0) {
            return false;
        }
        const QUuid identity = terms.at(index).id;
        terms[index] = cleaned;
        terms[index].id = identity;
        return true;
    });
}

void LumaphoneGlossaryStore::remove(const LumaphoneGlossaryTerm &term)
{
    make([term](Terms &terms) {
        const qsizetype index = indexOf(term, terms);
        if (index < 0) {
            return false;
        }
        terms.removeAt(index);
        return true;
    });
}

void LumaphoneGlossaryStore::restore(const LumaphoneGlossaryTerm &term, qsizetype row)
{
    make([term, row](Terms &terms) {
        terms.insert(std::clamp<qsizetype>(row, 0, terms.size()), term);
        return true;
    });
}

void LumaphoneGlossaryStore::importTerms(const QString &path)
{
    importTerms(decodeTerms(path, m_makeUuid));
}

void LumaphoneGlossaryStore::importTerms(const QList<LumaphoneGlossaryTerm> &imported)
{
    make([imported](Terms &terms) {
        QSet<QString> known;
        for (const LumaphoneGlossaryTerm &term : std::as_const(terms)) {
            known.insert(mergeKey(term.source));
        }
        for (const LumaphoneGlossaryTerm &term : imported) {
            const LumaphoneGlossaryTerm cleaned = term.cleaned();
            if (!known.contains(mergeKey(cleaned.source))) {
                terms.append(cleaned);
            }
        }
        return true;
    });
}

void LumaphoneGlossaryStore::exportYAML(const QString &path) const
{
    exportFile(path, encodeYAML(m_terms).toUtf8());
}

QCoro::Task<> LumaphoneGlossaryStore::openGlossaryFolder() const
{
    try {
        createFolder(m_rootPath);
    } catch (const FileError &) {
        // The viewer shows what there is.
    }
    co_await m_revealFile(glossaryPath());
}

LumaphoneGlossaryStore::Reading LumaphoneGlossaryStore::read() const
{
    try {
        const auto bytes = readFile(glossaryPath());
        if (!bytes || bytes == m_knownBytes) {
            return {.terms = m_terms};
        }
        return {.terms = withOwnIdentities(LumaphoneGlossaryDocument::decoded(json::parse(*bytes)).terms),
            .isOfOthers = true};
    } catch (const LocalizedError &) {
        return {.terms = m_terms, .isDamaged = true};
    }
}

void LumaphoneGlossaryStore::make(const Change &change)
{
    try {
        if (const auto terms = saved(change)) {
            publish(*terms, std::nullopt);
        }
    } catch (const LocalizedError &error) {
        Terms terms = m_terms;
        if (change(terms)) {
            m_unsaved.push_back(change);
            publish(terms, error.errorDescription());
        }
    }
}

std::optional<LumaphoneGlossaryStore::Terms> LumaphoneGlossaryStore::saved(const Change &change)
{
    createFolder(m_rootPath);
    const FileLock lock = FileLock::wait(m_rootPath + QLatin1String("/.glossary.lock"));
    Reading reading = read();
    if (reading.isOfOthers) {
        for (const Change &unsaved : m_unsaved) {
            unsaved(reading.terms);
        }
    }
    if (!change(reading.terms)) {
        return std::nullopt;
    }
    const QByteArray bytes = LumaphoneGlossaryDocument {reading.terms}.encoded();
    if (reading.isDamaged) {
        keepAside(glossaryPath());
    }
    removeInterruptedReplacements(glossaryPath());
    replaceFile(glossaryPath(), bytes, Durability::flushed);
    m_knownBytes = bytes;
    m_unsaved.clear();
    return reading.terms;
}

void LumaphoneGlossaryStore::publish(const Terms &terms, const std::optional<QString> &errorMessage)
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
