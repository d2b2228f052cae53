#pragma once

#include "base/DetachedTasks.h"
#include "base/MainQueue.h"
#include "diagnosis/Diagnosis.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace lumaphone {

/// What a window shows of the machine's state. Main thread.
class DiagnosisModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    /// Of the last look: maps of "title" and "findings", which are maps of "isProblem", "isAdvice",
    /// "isNeutral", "text" and "step".
    Q_PROPERTY(QVariantList groups READ groups NOTIFY changed)

public:
    /// Looks at the machine, on a thread of its own; it may wait.
    using Probe = std::function<MachineFacts()>;

    /// `tasks` and what the probe uses outlive the model.
    DiagnosisModel(
        Probe probe, DetachedTasks &tasks, std::shared_ptr<MainQueue> mainQueue, QObject *parent = nullptr);

    bool isRunning() const { return m_isRunning; }
    QVariantList groups() const;

    /// Looks again. Without effect while it is looking.
    Q_INVOKABLE void run();
    /// Puts the last look as plain text into the clipboard.
    Q_INVOKABLE void copy() const;

signals:
    void changed();

private:
    void take(const MachineFacts &facts);

    const Probe m_probe;
    DetachedTasks &m_tasks;
    const std::shared_ptr<MainQueue> m_mainQueue;
    Diagnosis m_diagnosis;
    bool m_isRunning = false;
};

} // namespace lumaphone
