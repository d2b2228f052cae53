#include "cli/DraftCommand.h"

#include "cli/TerminalText.h"
#include "platform/desktop/LockedSingleInstance.h"
#include "session/LumaphoneSessionDraftStore.h"

#include <QFile>

namespace lumaphone::cli {

namespace {

ExitStatus noDraft(const CommandStreams &streams)
{
    streams.complain(QStringLiteral("沒有尚未儲存的字幕草稿。"));
    return exitFailure;
}

} // namespace

bool claimDraft(LockedSingleInstance &instance, const CommandStreams &streams)
{
    if (instance.claim({}, [](const QString &) {}) == InstanceRole::first) {
        return true;
    }
    streams.complain(QStringLiteral("Lumaphone 正在執行並使用草稿。請先結束它。"));
    return false;
}

ExitStatus runDraftShow(const LumaphoneSessionDraftStore &store, const CommandStreams &streams)
{
    const auto draft = store.load();
    if (!draft) {
        if (!QFile::exists(store.draftPath())) {
            return noDraft(streams);
        }
        streams.complain(QStringLiteral("無法讀取草稿：%1").arg(store.draftPath()));
        return exitFailure;
    }
    for (const LumaphoneCaptionLine &line : draft->lines) {
        streams.print(singleRow(line.sourceText));
        if (!isPending(line) && line.translatedText != line.sourceText) {
            streams.print(QStringLiteral("  ") + singleRow(line.translatedText));
        }
    }
    return exitSuccess;
}

ExitStatus runDraftDiscard(LumaphoneSessionDraftStore &store, const CommandStreams &streams)
{
    if (!QFile::exists(store.draftPath())) {
        return noDraft(streams);
    }
    store.clear();
    if (QFile::exists(store.draftPath())) {
        streams.complain(QStringLiteral("無法刪除草稿：%1").arg(store.draftPath()));
        return exitFailure;
    }
    streams.print(QStringLiteral("草稿已刪除。"));
    return exitSuccess;
}

} // namespace lumaphone::cli
