#include "app/models/ModelItem.h"

#include "app/models/ModelTexts.h"
#include "base/AtomicFile.h"

#include <algorithm>
#include <utility>

namespace lumaphone {

ModelItem::ModelItem(ModelGroup group, const ModelStore &store)
    : m_group(std::move(group))
    , m_store(&store)
{
}

void ModelItem::queue()
{
    m_isQueued = true;
    m_errorText.clear();
}

void ModelItem::beginFirstOf(const QList<const ModelEntry *> &entries)
{
    m_pace.forget();
    m_later = 0;
    for (const ModelEntry *entry : entries.mid(1)) {
        m_later += isMissing(entry) ? entry->knownDownloadSize().value_or(0) : 0;
    }
}

void ModelItem::note(const ModelProgress &progress, std::chrono::nanoseconds now)
{
    m_progress = progress;
    if (progress.phase == ModelProgress::Phase::downloading) {
        m_pace.note(now, progress.done);
    }
}

void ModelItem::end(const QString &errorText)
{
    m_isQueued = false;
    m_progress.reset();
    m_pace.forget();
    m_errorText = errorText;
}

QString ModelItem::statusText() const
{
    if (m_isQueued) {
        if (!m_progress) {
            return QStringLiteral("等候中...");
        }
        return m_progress->phase == ModelProgress::Phase::downloading
            ? downloadText(*m_progress, m_pace, m_later)
            : QStringLiteral("正在檢查並解開...");
    }
    if (!m_errorText.isEmpty()) {
        return m_errorText;
    }
    const bool isBundled = m_group.isBundled();
    switch (state()) {
    case ModelState::missing:
        return isBundled ? QStringLiteral("這個版本沒有附上。請執行 packaging/install-speech-runtime "
                                          "後重新建置，或改裝完整的套件。")
                         : QStringLiteral("尚未安裝") + sizeText();
    case ModelState::partial:
        return QStringLiteral("已暫停，按「繼續」接著下載");
    case ModelState::installed:
        return isBundled ? QStringLiteral("Lumaphone 內建，可離線使用")
                         : QStringLiteral("已安裝，可離線使用");
    case ModelState::damaged:
        return isBundled ? QStringLiteral("檔案已損壞。請重新安裝 Lumaphone，"
                                          "或再執行一次 packaging/install-speech-runtime。")
                         : QStringLiteral("檔案已損壞");
    }
    Q_UNREACHABLE();
}

double ModelItem::progress() const
{
    return m_progress && m_progress->total && *m_progress->total > 0
        ? static_cast<double>(m_progress->done) / static_cast<double>(*m_progress->total)
        : -1.0;
}

QString ModelItem::installTitle() const
{
    switch (state()) {
    case ModelState::missing:
    case ModelState::installed:
        return QStringLiteral("安裝");
    case ModelState::partial:
        return QStringLiteral("繼續");
    case ModelState::damaged:
        return QStringLiteral("修復");
    }
    Q_UNREACHABLE();
}

bool ModelItem::hasLicence() const
{
    const auto &entries = m_group.entries;
    return std::any_of(entries.begin(), entries.end(), [this](const ModelEntry *entry) {
        const auto model = m_store->installed(*entry);
        return model && model->path(QStringLiteral("licence"));
    });
}

bool ModelItem::mustAcceptLicence() const
{
    const auto models = needed();
    return std::any_of(models.begin(), models.end(),
        [this](const ModelEntry *entry) { return entry->licence.mustBeAccepted && isMissing(entry); });
}

QString ModelItem::wholeLicence() const
{
    const QList<const ModelEntry *> entries = needed();
    QStringList texts;
    for (const ModelEntry *entry : entries) {
        const QString title = entries.size() > 1 ? entry->title + QStringLiteral("\n\n") : QString();
        try {
            texts.append(title + m_store->licenceText(*entry));
        } catch (const FileError &error) {
            texts.append(title + error.errorDescription());
        }
    }
    return texts.join(QStringLiteral("\n\n"));
}

QString ModelItem::sizeText() const
{
    qint64 download = 0;
    qint64 unpacked = 0;
    bool isDownloadKnown = true;
    for (const ModelEntry *entry : needed()) {
        if (!isMissing(entry)) {
            continue;
        }
        const auto size = entry->knownDownloadSize();
        isDownloadKnown = isDownloadKnown && size;
        download += size.value_or(0);
        unpacked += entry->knownSize();
    }
    if (isDownloadKnown && download > 0) {
        return QStringLiteral("，下載約 %1").arg(dataSize(download));
    }
    return unpacked > 0 ? QStringLiteral("，安裝後約 %1").arg(dataSize(unpacked)) : QString();
}

bool ModelItem::isMissing(const ModelEntry *entry) const
{
    return m_store->state(*entry) != ModelState::installed;
}

} // namespace lumaphone
