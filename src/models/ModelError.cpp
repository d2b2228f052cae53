#include "models/ModelError.h"

namespace lumaphone {

namespace {

QString description(ModelError::Case errorCase, const QString &subject, const QString &detail)
{
    switch (errorCase) {
    case ModelError::Case::catalogueUnreadable:
        return QStringLiteral("無法讀取模型目錄 %1：%2").arg(subject, detail);
    case ModelError::Case::unknownModel:
        return QStringLiteral("沒有名為「%1」的模型。").arg(subject);
    case ModelError::Case::licenceNotAccepted:
        return QStringLiteral("安裝「%1」之前，必須先接受它的授權條款。").arg(subject);
    case ModelError::Case::busy:
        return QStringLiteral("另一個程式正在安裝或移除「%1」。請等它完成後再試一次。").arg(subject);
    case ModelError::Case::unreachable:
        return QStringLiteral("無法下載 %1：%2。請檢查網路連線。").arg(subject, detail);
    case ModelError::Case::refused:
        return QStringLiteral("無法下載 %1：伺服器回應 HTTP %2。").arg(subject, detail);
    case ModelError::Case::stalled:
        return QStringLiteral("下載 %1 時伺服器沒有回應。已下載的部分會保留，可稍後繼續。").arg(subject);
    case ModelError::Case::interrupted:
        return QStringLiteral("下載 %1 時連線中斷。已下載的部分會保留，可稍後繼續。").arg(subject);
    case ModelError::Case::wrongSize:
        return QStringLiteral("%1 的大小不對（%2）。請重新安裝。").arg(subject, detail);
    case ModelError::Case::wrongContents:
        return QStringLiteral("%1 的內容不對（SHA-256 不符）。請重新安裝。").arg(subject);
    case ModelError::Case::damagedArchive:
        return QStringLiteral("無法解開 %1：%2。").arg(subject, detail);
    case ModelError::Case::diskFull:
        return QStringLiteral("磁碟空間不足，無法寫入 %1。").arg(subject);
    case ModelError::Case::fileMissing:
        return QStringLiteral("找不到檔案 %1。").arg(subject);
    case ModelError::Case::cancelled:
        return QStringLiteral("已取消安裝「%1」。").arg(subject);
    case ModelError::Case::partOfProgram:
        return QStringLiteral("「%1」是 Lumaphone 的一部分，不需要安裝，也不能移除。").arg(subject);
    case ModelError::Case::notShipped:
        return QStringLiteral("這個版本的 Lumaphone 沒有附上「%1」。"
                              "請執行 packaging/install-speech-runtime 後重新建置，或改裝完整的套件。")
            .arg(subject);
    case ModelError::Case::damagedProgram:
        return QStringLiteral("Lumaphone 附的檔案 %1 已損壞（%2）。"
                              "請重新安裝 Lumaphone，或再執行一次 packaging/install-speech-runtime。")
            .arg(subject, detail);
    }
    Q_UNREACHABLE();
}

} // namespace

ModelError::ModelError(Case errorCase, const QString &subject, const QString &detail)
    : LocalizedError(description(errorCase, subject, detail))
    , m_case(errorCase)
    , m_subject(subject)
{
}

} // namespace lumaphone
