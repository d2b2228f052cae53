#pragma once

#include <QList>
#include <QString>

#include <optional>

/// What was found on this machine when it was looked at, without any judgement.
namespace lumaphone {

struct SoundDeviceFacts
{
    QString name; ///< for people
    bool isDefault = false;

    bool operator==(const SoundDeviceFacts &) const = default;
};

struct SoundServerFacts
{
    QString problem; ///< why it could not be asked; empty if it answered
    QString server; ///< its name and version, as it says them
    QList<SoundDeviceFacts> outputs;
    QList<SoundDeviceFacts> inputs; ///< without the monitors of outputs
};

/// What is there for one spoken language.
struct LanguageFacts
{
    QString name; ///< such as "日文"
    QString recogniser; ///< for people; empty if none is there
    QString recogniserHint; ///< how to get one
    bool needsTranslation = true;
    bool isTranslated = false; ///< on this machine
    QString translationModels; ///< as the terminal's command names them, such as "ja-zh-Hant"
    qint64 translationSize = 0; ///< bytes to fetch; 0 if it is not known
};

struct ModelFacts
{
    enum class State { missing, partial, installed, damaged, bundled };

    QString id;
    QString title;
    State state = State::missing;
    qint64 size = 0; ///< bytes on the disk; 0 if it is not known
};

/// A service of the session's bus.
enum class ServiceState {
    noBus,
    missing,
    startable, ///< starts when it is asked
    running,
};

struct KeyringFacts
{
    ServiceState service = ServiceState::missing;
    std::optional<bool> isLocked; ///< of the collection for new secrets; none if that could not be learned
};

struct DisplayFacts
{
    enum class Windows { none, x11, wayland };

    QString desktop; ///< as the session names itself; may be empty
    Windows session = Windows::none; ///< what the session draws with
    Windows program = Windows::none; ///< what the program's windows use
    bool hasLayerShell = false; ///< the compositor offers it and this build speaks it
};

struct MachineFacts
{
    QString program; ///< its name and version
    QString system; ///< distribution, kernel and processor
    QString toolkit;
    SoundServerFacts sound;
    QList<LanguageFacts> languages;
    QList<ModelFacts> models;
    KeyringFacts keyring;
    DisplayFacts display;
    ServiceState portals = ServiceState::missing;
};

} // namespace lumaphone
