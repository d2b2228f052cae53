#pragma once

#include "base/MainQueue.h"
#include "models/ModelStore.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace lumaphone {

struct ModelProgress
{
    enum class Phase { downloading, unpacking };

    Phase phase = Phase::downloading;
    qint64 done = 0; ///< bytes of the phase
    std::optional<qint64> total; ///< if known

    bool operator==(const ModelProgress &) const = default;
};

using ModelProgressHandler = std::function<void(const ModelProgress &)>;

/// Whether the user has accepted the licence of the model.
enum class LicenceConsent { none, accepted };

struct ModelInstallerOptions
{
    std::chrono::milliseconds stallTimeout {30'000};
    int attempts = 4; ///< at a download whose connection is cut
};

/// Brings models into the store. A model is there when all of its files have been fetched, unpacked and
/// checked, and not a moment before; what has been fetched when something goes wrong is kept for the next
/// time. Main thread.
class ModelInstaller
{
public:
    /// `store` outlives every installation under way.
    ModelInstaller(
        const ModelStore &store, std::shared_ptr<MainQueue> mainQueue, ModelInstallerOptions options = {});
    ~ModelInstaller();

    /// Fetches a model from where its publisher keeps it. A model that is installed already stays as it is.
    /// Requesting `stop`, on the main thread, ends it with ModelError (cancelled). Throws ModelError,
    /// FileError.
    QCoro::Task<> install(
        QString id, LicenceConsent consent, ModelProgressHandler onProgress = {}, std::stop_token stop = {});

    /// Takes a model from a folder that holds its files, packed as published or unpacked, or from a file that
    /// is all there is to fetch. Replaces an installed one. Otherwise as install().
    QCoro::Task<> installFrom(QString path, QString id, LicenceConsent consent,
        ModelProgressHandler onProgress = {}, std::stop_token stop = {});

private:
    struct Part;
    struct State;

    // These keep what they use alive, so that an installation may outlive the installer.
    static QCoro::Task<> fetch(std::shared_ptr<State> state, ModelDownload download, QString path,
        std::function<void(qint64)> onBytes, std::stop_token stop);
    static QCoro::Task<> complete(std::shared_ptr<State> state, ModelEntry entry, QList<Part> parts,
        ModelProgressHandler onProgress, std::stop_token stop);

    std::shared_ptr<State> m_state;
};

} // namespace lumaphone
