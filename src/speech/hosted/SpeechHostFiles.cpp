#include "speech/hosted/SpeechHostFiles.h"

#include <QFileInfo>

namespace lumaphone {

SpeechHostFiles::SpeechHostFiles(std::shared_ptr<const BundleResources> resources, Models models)
    : m_resources(std::move(resources))
    , m_models(std::move(models))
{
}

HostedSpeechEngine::Installation SpeechHostFiles::operator()() const
{
    const auto program = m_resources->path(QStringLiteral("lumaphone-speech-host"));
    const auto runtime = m_resources->path(QStringLiteral("libsherpa-onnx-c-api.so"));
    if (!program || !runtime || !m_resources->path(QStringLiteral("libonnxruntime.so"))) {
        return QStringLiteral("這個版本的 Lumaphone 缺少語音辨識執行庫（libsherpa-onnx-c-api.so）。"
                              "請執行 packaging/install-speech-runtime 後重新建置，或改裝完整的套件。");
    }
    auto models = m_models();
    if (auto *const hint = std::get_if<QString>(&models)) {
        return std::move(*hint);
    }
    auto &files = std::get<SpeechModelFiles>(models);
    return SpeechInstallation {*program, QFileInfo(*runtime).absolutePath(), std::move(files.voiceDetector),
        std::move(files.network), {}, std::move(files.demandIntact), std::move(files.repair),
        files.voiceThreshold};
}

} // namespace lumaphone
