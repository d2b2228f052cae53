#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

class LumaphoneSettings;

/// Whether the program explains itself when it starts: to those who have not closed the explanation yet, and
/// have nothing here that shows that they know the program. Main thread.
class WelcomeModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(bool isWanted READ isWanted NOTIFY isWantedChanged)

public:
    /// `settings` outlives the model. `hasTraces`: a session or a library of this user is here.
    WelcomeModel(LumaphoneSettings &settings, bool hasTraces, QObject *parent = nullptr);

    bool isWanted() const { return m_isWanted; }
    /// The user has closed the explanation: it does not come by itself any more.
    Q_INVOKABLE void close();

signals:
    void isWantedChanged();

private:
    LumaphoneSettings &m_settings;
    bool m_isWanted;
};

} // namespace lumaphone
