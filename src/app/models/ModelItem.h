#pragma once

#include "app/models/DownloadPace.h"
#include "models/ModelGroup.h"
#include "models/ModelInstaller.h"

#include <QString>

#include <chrono>
#include <optional>

namespace lumaphone {

/// One thing that the user may want, such as translation from Japanese: what there is of it, how far its
/// installation is, and what to say of it. Main thread.
class ModelItem
{
public:
    /// The store, with the catalogue that the group is of, outlives the item.
    ModelItem(ModelGroup group, const ModelStore &store);

    const ModelGroup &group() const { return m_group; }
    const QString &title() const { return m_group.title; }
    /// Of the model that it is about.
    const QString &id() const { return m_group.entries.constFirst()->id; }
    /// The models that have to be in place.
    QList<const ModelEntry *> needed() const { return neededModels(m_group, *m_store); }
    ModelState state() const { return groupState(m_group, *m_store); }
    bool isReady() const { return state() == ModelState::installed; }

    /// Whether it is being installed or waits for it.
    bool isQueued() const { return m_isQueued; }
    void queue();
    void leaveQueue() { m_isQueued = false; }
    /// The first of `entries` is fetched now, and the others after it.
    void beginFirstOf(const QList<const ModelEntry *> &entries);
    void note(const ModelProgress &progress, std::chrono::nanoseconds now);
    /// With an empty text if it went well, or as the user wished.
    void end(const QString &errorText);
    void setErrorText(const QString &text) { m_errorText = text; }

    /// One line: what there is, how far it is, or what went wrong.
    QString statusText() const;
    bool isError() const { return !m_errorText.isEmpty(); }
    /// 0 to 1, or -1 if nobody knows.
    double progress() const;
    /// Of the button: install, go on or repair.
    QString installTitle() const;
    /// Whether there is a whole licence to read, which lies with the files.
    bool hasLicence() const;
    bool mustAcceptLicence() const;
    /// The terms of its models as far as they are here, with all that lies with their files.
    QString wholeLicence() const;

private:
    /// How much is to be fetched, or what it becomes, as the end of a sentence; empty if nobody knows.
    QString sizeText() const;
    bool isMissing(const ModelEntry *entry) const;

    ModelGroup m_group;
    const ModelStore *m_store;
    bool m_isQueued = false;
    std::optional<ModelProgress> m_progress;
    DownloadPace m_pace;
    qint64 m_later = 0; ///< bytes that its other models take, as far as they are known
    QString m_errorText;
};

} // namespace lumaphone
