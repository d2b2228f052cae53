#pragma once

#include "app/live/TranscriptFinder.h"
#include "app/live/TranscriptSelection.h"

#include <QIdentityProxyModel>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

class CaptionLinesModel;

/// The lines of the live session with what their reader marks in them: the line that the keyboard is at, what
/// is selected, and what a search has found. All of it stays where it is while lines come and change.
class TranscriptModel final : public QIdentityProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The live session's model has one.")
    /// The line that the keyboard is at, or -1.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    Q_PROPERTY(QString searchText READ searchText NOTIFY foundChanged)
    Q_PROPERTY(int foundCount READ foundCount NOTIFY foundChanged)
    /// Which of them is looked at, counted from one; zero for none.
    Q_PROPERTY(int foundNumber READ foundNumber NOTIFY foundChanged)
    /// The line that it is in, or -1.
    Q_PROPERTY(int foundRow READ foundRow NOTIFY foundChanged)

public:
    enum Role {
        /// Lists of maps with "from", "to" and "kind", a MarkKind, in the order in which they are drawn.
        SourceMarksRole = Qt::UserRole + 100,
        TranslationMarksRole,
        IsSelectedRole, ///< as a whole
    };
    enum MarkKind {
        Selected,
        Found,
        LookedAt,
    };
    Q_ENUM(MarkKind)

    /// The model of the lines must outlive this one.
    explicit TranscriptModel(CaptionLinesModel &lines, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int currentRow() const { return m_currentRow; }
    bool hasSelection() const { return !m_selection.isEmpty(); }

    /// With the keyboard: to a line, or from the current one to that one with all between selected.
    Q_INVOKABLE void goTo(int row);
    Q_INVOKABLE void selectTo(int row);
    Q_INVOKABLE void selectAll();
    /// With the pointer: from a place in the text of a column to another. Offsets are those of UTF-16.
    Q_INVOKABLE void beginSelection(int row, bool isInTranslation, int offset);
    Q_INVOKABLE void extendSelection(int row, int offset);
    Q_INVOKABLE void selectWord(int row, bool isInTranslation, int offset);
    Q_INVOKABLE void clearSelection();
    /// To the clipboard of the pointer, where the desktop has one.
    Q_INVOKABLE void offerSelection() const;

    // To the clipboard.
    Q_INVOKABLE void copySelection() const;
    Q_INVOKABLE void copyLine(int row) const; ///< with its translation
    Q_INVOKABLE void copySource(int row) const;
    Q_INVOKABLE void copyTranslation(int row) const;
    Q_INVOKABLE bool hasTranslation(int row) const;

    const QString &searchText() const { return m_finder.pattern(); }
    int foundCount() const { return m_finder.count(); }
    int foundNumber() const { return m_finder.number(); }
    int foundRow() const;
    /// Finds a text in all lines, and looks at the first one in that row or below it.
    Q_INVOKABLE void search(const QString &text, int row);
    /// Looks at the next one, or the one before for a negative number.
    Q_INVOKABLE void lookAtNext(int by);

signals:
    void currentRowChanged();
    void selectionChanged();
    void foundChanged();

private:
    /// Empty where there is none, whatever stands in its place.
    QString textOf(int row, TranscriptSelection::Extent column) const;
    QVariantList marks(int row, bool isInTranslation) const;
    void makeRoom(int row);
    void searchRows(int first, int last);
    void forget();
    void setCurrentRow(int row);
    /// Runs `change`, and tells which rows it has marked or unmarked.
    template<typename Change> void changeSelection(Change change);
    void tellMarks(int first, int last);

    const CaptionLinesModel &m_lines;
    TranscriptSelection m_selection;
    TranscriptFinder m_finder;
    int m_currentRow = -1;
};

} // namespace lumaphone
