#include "app/live/StageLayout.h"

namespace lumaphone {

StageLayout::StageLayout(QObject *parent)
    : QObject(parent)
{
    m_needs.height = stageHeight(m_workspaceHeight);
    m_shares = shareStage(m_needs);
}

void StageLayout::setWorkspaceHeight(int height)
{
    set(m_workspaceHeight, height);
}

void StageLayout::setTranslationLines(int lines)
{
    set(m_needs.translationLines, lines);
}

void StageLayout::setNoticeLines(int lines)
{
    set(m_needs.noticeLines, lines);
}

int StageLayout::translationTop() const
{
    return sourceTop() + (m_shares.sourceLines > 0 ? sourceHeight() + stage::sourceGap : 0);
}

void StageLayout::set(int &member, int value)
{
    if (member == value) {
        return;
    }
    member = value;
    const int height = stageHeight(m_workspaceHeight);
    const bool isOtherHeight = m_needs.height != height;
    m_needs.height = height;
    m_shares = shareStage(m_needs);
    if (isOtherHeight) {
        emit heightChanged();
    }
    emit changed();
}

} // namespace lumaphone
