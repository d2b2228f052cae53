#pragma once

#include <QObject>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QStringList>

namespace lumaphone::test {

/// The hands and eyes of a user in the running program. Reads one command per line from the standard input
/// and answers each with one line, "ok" and what was seen, or "failed" and why:
///
///     click NAME              clicks into the middle of the visible item of that name, once it can be used
///     press KEYS              presses keys, such as Ctrl+S
///     type NAME TEXT          replaces the text of a field
///     choose NAME VALUE       opens a picker and clicks the choice of that value
///     await NAME TEXT         waits until the item's text contains TEXT
///     shown NAME              waits until the item is visible
///     gone NAME               waits until it is not
///     panel TEXT              waits until the caption panel shows TEXT; without TEXT until there is none
///     count NAME NUMBER       waits until a list has just as many rows
///     keyboard                walks through the window, or through the sheet on top of it, with Tab, and
///     fails if
///                             a control is not reached or cannot be named to those who do not see it
///     focus NAME              waits until the keys go to the item of that name
///     file NAME PATH          answers a file dialog, once it is open
///     frame                   waits until the window has shown a frame
///     platform                says on which window system it is
///     fill                    makes the window fill the screen
///     active                  waits until the window has the keyboard
///     close                   closes the window
class Driver final : public QObject
{
    Q_OBJECT

public:
    Driver();

private:
    void read();
    QString obey(const QString &command, const QString &name, const QString &rest);
    void click(QQuickWindow &window, const QString &name) const;
    void choose(QQuickWindow &window, const QString &picker, const QString &value) const;
    QString walk(QQuickWindow &window);
    QQuickItem *find(const QString &name) const;
    QQuickItem &usable(const QString &name) const;

    QSocketNotifier m_input;
    QByteArray m_unread;
    bool m_isBusy = false;
};

} // namespace lumaphone::test
