#include "translation/engine/EngineError.h"

#include <QFileInfo>

namespace lumaphone::engine {
namespace {

QString describe(EngineError::Case which, const QString &path, const QString &subject)
{
    const QString name = QFileInfo(path).fileName();
    using enum EngineError::Case;
    switch (which) {
    case unreadable:
        return QStringLiteral("無法讀取翻譯模型檔「%1」：%2").arg(name, subject);
    case truncated:
        return QStringLiteral("翻譯模型檔「%1」不完整，請重新安裝模型：%2").arg(name, subject);
    case notRecognised:
        return QStringLiteral("「%1」不是可以辨識的翻譯模型檔：%2").arg(name, subject);
    case damaged:
        return QStringLiteral("翻譯模型檔「%1」已損壞，請重新安裝模型：%2").arg(name, subject);
    case unsupported:
        return QStringLiteral("不支援翻譯模型檔「%1」的結構：%2").arg(name, subject);
    case mismatched:
        return QStringLiteral("翻譯模型檔「%1」與同組的其他檔案不相符，請重新安裝模型：%2")
            .arg(name, subject);
    case cancelled:
        return QStringLiteral("翻譯已取消。");
    }
    Q_UNREACHABLE();
}

} // namespace

EngineError::EngineError(Case which, const QString &path, const QString &subject)
    : LocalizedError(describe(which, path, subject))
    , m_which(which)
    , m_path(path)
    , m_subject(subject)
{
}

} // namespace lumaphone::engine
