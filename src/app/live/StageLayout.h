#pragma once

#include "app/live/StageShares.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// How the stage shares its height, for the view: see shareStage().
class StageLayout : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // What is asked for.
    Q_PROPERTY(int workspaceHeight READ workspaceHeight WRITE setWorkspaceHeight NOTIFY changed)
    Q_PROPERTY(int translationLines READ translationLines WRITE setTranslationLines NOTIFY changed)
    Q_PROPERTY(int noticeLines READ noticeLines WRITE setNoticeLines NOTIFY changed)
    // What follows from the height alone.
    Q_PROPERTY(int height READ height NOTIFY heightChanged)
    Q_PROPERTY(int sideMargin READ sideMargin NOTIFY heightChanged)
    Q_PROPERTY(int sourceSize READ sourceSize NOTIFY heightChanged)
    Q_PROPERTY(int sourceLineHeight READ sourceLineHeight NOTIFY heightChanged)
    Q_PROPERTY(int translationSize READ translationSize NOTIFY heightChanged)
    Q_PROPERTY(int translationLineHeight READ translationLineHeight NOTIFY heightChanged)
    // What is given.
    Q_PROPERTY(int margin READ margin NOTIFY changed)
    Q_PROPERTY(bool hasPills READ hasPills NOTIFY changed)
    Q_PROPERTY(int sourceTop READ sourceTop NOTIFY changed)
    Q_PROPERTY(int sourceHeight READ sourceHeight NOTIFY changed)
    Q_PROPERTY(int translationTop READ translationTop NOTIFY changed)
    Q_PROPERTY(int shownNoticeLines READ shownNoticeLines NOTIFY changed)
    Q_PROPERTY(int noticeHeight READ noticeHeight NOTIFY changed)

public:
    explicit StageLayout(QObject *parent = nullptr);

    int workspaceHeight() const { return m_workspaceHeight; }
    void setWorkspaceHeight(int height);
    int translationLines() const { return m_needs.translationLines; }
    void setTranslationLines(int lines);
    int noticeLines() const { return m_needs.noticeLines; }
    void setNoticeLines(int lines);

    int height() const { return m_needs.height; }
    int sideMargin() const { return type().margin; }
    int sourceSize() const { return type().sourceSize; }
    int sourceLineHeight() const { return type().sourceLineHeight; }
    int translationSize() const { return type().translationSize; }
    int translationLineHeight() const { return type().translationLineHeight; }

    int margin() const { return m_shares.margin; }
    bool hasPills() const { return m_shares.hasPills; }
    /// From the upper edge of what lies between the margins, as the other one.
    int sourceTop() const { return m_shares.hasPills ? stage::pillHeight + m_shares.gap : 0; }
    int sourceHeight() const { return m_shares.sourceLines * type().sourceLineHeight; }
    int translationTop() const;
    int shownNoticeLines() const { return m_shares.noticeLines; }
    int noticeHeight() const { return stageNoticeHeight(m_shares.noticeLines); }

signals:
    void changed();
    void heightChanged();

private:
    const StageType &type() const { return stageType(m_shares.isCompact); }
    void set(int &member, int value);

    int m_workspaceHeight = 0;
    StageNeeds m_needs;
    StageShares m_shares;
};

} // namespace lumaphone
