#include "storage/TranscriptSearch.h"

#include "base/Text.h"

#include <algorithm>

namespace lumaphone {

namespace {

/// Languages whose small letters are not those of everybody else.
bool hasCaseOfItsOwn(const QLocale &locale)
{
    switch (locale.language()) {
    case QLocale::Turkish:
    case QLocale::Azerbaijani:
    case QLocale::Lithuanian:
        return true;
    default:
        return false;
    }
}

} // namespace

TranscriptSearch::TranscriptSearch(const QLocale &locale)
    : m_locale(locale)
{
}

QList<TranscriptRecordMetadata> TranscriptSearch::filtered(
    const QList<TranscriptRecordMetadata> &records, const QString &query)
{
    const QString wanted = folded(text::trimmed(query));
    if (wanted.isEmpty()) {
        return records;
    }
    QList<TranscriptRecordMetadata> found;
    std::copy_if(records.begin(), records.end(), std::back_inserter(found),
        [&](const auto &record) { return foldedTexts(record).contains(wanted); });
    return found;
}

void TranscriptSearch::forget(const QUuid &id)
{
    m_foldedTexts.remove(id);
}

void TranscriptSearch::forgetAll()
{
    m_foldedTexts.clear();
}

QString TranscriptSearch::folded(const QString &text) const
{
    const QString lower = hasCaseOfItsOwn(m_locale) ? m_locale.toLower(text) : text;
    return lower.toCaseFolded().normalized(QString::NormalizationForm_C);
}

const QString &TranscriptSearch::foldedTexts(const TranscriptRecordMetadata &record)
{
    auto found = m_foldedTexts.find(record.id);
    if (found == m_foldedTexts.end()) {
        QString texts = record.searchText;
        if (!texts.startsWith(record.title + QLatin1Char('\n') + record.note)) {
            // A noncharacter between them: no query reaches over it.
            texts += QChar(0xffff) + record.title + QChar(0xffff) + record.note;
        }
        found = m_foldedTexts.insert(record.id, folded(texts));
    }
    return *found;
}

} // namespace lumaphone
