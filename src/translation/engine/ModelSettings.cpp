#include "translation/engine/ModelSettings.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>

namespace lumaphone::engine {
namespace {

using Lines = std::map<std::string, std::string, std::less<>>;

constexpr std::uint64_t longestDescription = 1 << 20;
constexpr int deepestStack = 64;
constexpr int widestLayer = 16384;

std::string_view trimmed(std::string_view text)
{
    const auto isBlank = [](char character) {
        return character == ' ' || character == '\t' || character == '\r';
    };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view unquoted(std::string_view value)
{
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

class Description
{
public:
    Description(const ModelFile &file, const Lines &lines)
        : m_file(file)
        , m_lines(lines)
    {
    }

    int number(std::string_view key, int least, int most) const
    {
        const std::string_view value = text(key);
        int parsed = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), parsed);
        if (error != std::errc() || end != value.data() + value.size())
            m_file.fail(EngineError::Case::damaged, said(key, value));
        if (parsed < least || parsed > most)
            m_file.fail(EngineError::Case::unsupported, said(key, value));
        return parsed;
    }

    /// A setting that this engine computes in one way only; a description may leave it out.
    void demand(std::string_view key, std::string_view expected) const
    {
        const auto found = m_lines.find(key);
        if (found != m_lines.end() && found->second != expected)
            m_file.fail(EngineError::Case::unsupported, said(key, found->second));
    }

private:
    std::string_view text(std::string_view key) const
    {
        const auto found = m_lines.find(key);
        if (found == m_lines.end())
            m_file.fail(EngineError::Case::damaged,
                QStringLiteral("no %1").arg(QLatin1String(key.data(), int(key.size()))));
        return found->second;
    }

    static QString said(std::string_view key, std::string_view value)
    {
        constexpr std::size_t shown = 40;
        return QStringLiteral("%1: %2").arg(QString::fromUtf8(key.data(), int(key.size())),
            QString::fromUtf8(value.data(), int(std::min(value.size(), shown))));
    }

    const ModelFile &m_file;
    const Lines &m_lines;
};

} // namespace

Lines readSettingLines(std::string_view text)
{
    Lines lines;
    auto current = lines.end();
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::string_view content = trimmed(line);
        if (content.empty() || content.front() == '#')
            continue;
        if (line.front() == ' ' || line.front() == '-') {
            if (current != lines.end())
                current->second += content;
            continue;
        }
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            continue;
        current = lines
                      .insert_or_assign(std::string(trimmed(line.substr(0, colon))),
                          std::string(unquoted(trimmed(line.substr(colon + 1)))))
                      .first;
    }
    return lines;
}

ModelSettings ModelSettings::read(const ModelFile &file)
{
    const Tensor *tensor = file.find("special:model.yml");
    if (!tensor)
        file.fail(EngineError::Case::notRecognised, QStringLiteral("no special:model.yml"));
    if (tensor->type != TensorType::int8 || tensor->elements > longestDescription)
        file.fail(EngineError::Case::damaged, QStringLiteral("special:model.yml"));
    std::string_view text(reinterpret_cast<const char *>(tensor->data.data()), tensor->elements);
    text = text.substr(0, text.find('\0'));
    const Lines lines = readSettingLines(text);

    const Description description(file, lines);
    description.demand("type", "transformer");
    description.demand("transformer-decoder-autoreg", "rnn");
    description.demand("dec-cell", "ssru");
    description.demand("transformer-ffn-activation", "relu");
    description.demand("transformer-ffn-depth", "2");
    description.demand("transformer-decoder-dim-ffn", "0");
    description.demand("transformer-decoder-ffn-depth", "0");
    description.demand("transformer-preprocess", "");
    description.demand("transformer-postprocess", "dan");
    description.demand("transformer-postprocess-top", "");
    description.demand("transformer-tied-layers", "[]");
    description.demand("transformer-train-position-embeddings", "false");
    description.demand("transformer-no-projection", "false");
    description.demand("transformer-rnn-projection", "false");
    description.demand("transformer-no-bias", "false");
    description.demand("transformer-no-affine", "false");
    description.demand("factors-combine", "sum");

    ModelSettings settings;
    settings.width = description.number("dim-emb", 64, widestLayer);
    settings.encoderDepth = description.number("enc-depth", 1, deepestStack);
    settings.decoderDepth = description.number("dec-depth", 1, deepestStack);
    settings.heads = description.number("transformer-heads", 1, widestLayer);
    settings.innerWidth = description.number("transformer-dim-ffn", 64, widestLayer);
    // The kernels take rows of 64 weights, and heads share the width evenly.
    if (settings.width % 64 != 0 || settings.innerWidth % 64 != 0 || settings.width % settings.heads != 0)
        file.fail(EngineError::Case::unsupported,
            QStringLiteral("dim-emb %1, transformer-dim-ffn %2, transformer-heads %3")
                .arg(settings.width)
                .arg(settings.innerWidth)
                .arg(settings.heads));
    return settings;
}

} // namespace lumaphone::engine
