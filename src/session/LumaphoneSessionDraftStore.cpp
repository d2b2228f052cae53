#include "session/LumaphoneSessionDraftStore.h"

#include "base/AtomicFile.h"
#include "platform/PlatformFolders.h"
#include "storage/UserFiles.h"

#include <QDir>

#include <array>
#include <utility>

namespace lumaphone {

namespace {

const QString &fileName()
{
    static const QString name = QStringLiteral("live-session.json");
    return name;
}

} // namespace

LumaphoneSessionDraftStore::LumaphoneSessionDraftStore(QString rootPath)
    : m_rootPath(std::move(rootPath))
{
}

LumaphoneSessionDraftStore::LumaphoneSessionDraftStore(const PlatformFolders &folders)
    : LumaphoneSessionDraftStore(draftsFolder(folders))
{
}

QString LumaphoneSessionDraftStore::draftPath() const
{
    return QDir(m_rootPath).filePath(fileName());
}

void LumaphoneSessionDraftStore::save(const LumaphoneSessionDraft &draft)
{
    if (m_rootPath.isEmpty()) {
        return;
    }
    LumaphoneSessionDraft frame = draft;
    frame.lines.clear();
    // The frame's only list is that of the lines; they are put between its brackets.
    const QByteArray around = json::pretty(toJson(frame));
    const qsizetype inside = around.indexOf("[]") + 1;
    const QByteArrayView lines = m_lines.encode(draft.lines);
    const bool isEmpty = lines.isEmpty();
    const std::array<QByteArrayView, 5> pieces {QByteArrayView(around).first(inside), isEmpty ? "" : "\n",
        lines, isEmpty ? "" : "\n  ", QByteArrayView(around).sliced(inside)};
    m_mustFlush = m_lines.takeBecameFinal() || m_mustFlush;
    try {
        createFolder(m_rootPath);
        removeLeftovers();
        replaceFile(draftPath(), pieces, m_mustFlush ? Durability::flushed : Durability::renamed);
        m_mustFlush = false;
    } catch (const FileError &) {
        // The session goes on; the next save tries again.
    }
}

void LumaphoneSessionDraftStore::clear()
{
    if (m_rootPath.isEmpty()) {
        return;
    }
    m_lines = {};
    m_mustFlush = false;
    removeLeftovers();
    try {
        removeFile(draftPath());
    } catch (const FileError &) {
        // The next save point tries again.
    }
}

void LumaphoneSessionDraftStore::removeLeftovers()
{
    if (std::exchange(m_isTidy, true)) {
        return;
    }
    removeInterruptedReplacements(draftPath());
}

std::optional<LumaphoneSessionDraft> LumaphoneSessionDraftStore::load() const
{
    if (m_rootPath.isEmpty()) {
        return std::nullopt;
    }
    try {
        const auto bytes = readFile(draftPath());
        return bytes ? std::optional(sessionDraftFromJson(json::parse(*bytes))) : std::nullopt;
    } catch (const LocalizedError &) {
        return std::nullopt;
    }
}

} // namespace lumaphone
