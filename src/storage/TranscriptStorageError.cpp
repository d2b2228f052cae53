#include "storage/TranscriptStorageError.h"

namespace lumaphone {

namespace {

QString description(TranscriptStorageError::Case errorCase, const QString &subject, const QString &detail)
{
    switch (errorCase) {
    case TranscriptStorageError::Case::noDataFolder:
        return QStringLiteral("找不到使用者的資料夾，字幕紀錄暫存於 /tmp。請設定 HOME 或 XDG_DATA_HOME。");
    case TranscriptStorageError::Case::folderMissing:
        return QStringLiteral("找不到 session 資料夾「%1」。").arg(subject);
    case TranscriptStorageError::Case::fileMissing:
        return QStringLiteral("找不到檔案「%1」。").arg(subject);
    case TranscriptStorageError::Case::fileDamaged:
        return QStringLiteral("檔案「%1」已損壞或不完整，無法讀取。詳細資訊：%2").arg(subject, detail);
    case TranscriptStorageError::Case::unpairedSurrogate:
        return QStringLiteral("%1含有不完整的字元（不成對的代理碼），無法儲存。請刪除後再試一次。")
            .arg(subject);
    }
    Q_UNREACHABLE();
}

} // namespace

TranscriptStorageError::TranscriptStorageError(Case errorCase, const QString &subject, const QString &detail)
    : LocalizedError(description(errorCase, subject, detail))
    , m_case(errorCase)
{
}

} // namespace lumaphone
