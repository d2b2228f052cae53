#pragma once

#include "models/ModelStore.h"
#include "translation/engine/TranslationModel.h"
#include "translation/engine/Translator.h"

#include <QList>
#include <QString>

#include <map>
#include <memory>
#include <mutex>

namespace lumaphone {

/// A leg's model and the folder it lies in.
struct InstalledLeg
{
    QString id;
    InstalledModel model;
};

/// The models that are in memory, each once however many pairs it serves. Any thread.
class LoadedLegs
{
public:
    /// `threads` per translation, at least 1.
    explicit LoadedLegs(int threads);

    /// Loads what is not loaded yet and reads its weights once. Takes a while. Throws EngineError, or
    /// PlatformError where the system lacks the dictionaries of Taiwan's words.
    std::shared_ptr<engine::Translator> translator(const QList<InstalledLeg> &legs, WrittenChinese written);

private:
    std::shared_ptr<engine::TranslationModel> leg(const InstalledLeg &leg);

    const int m_threads;
    std::mutex m_mutex;
    std::map<QString, std::weak_ptr<engine::TranslationModel>> m_loaded;
};

} // namespace lumaphone
