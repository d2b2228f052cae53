#include "translation/engine/StudentModel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <utility>

namespace lumaphone::engine {
namespace {

QString shown(const std::string &name)
{
    return QString::fromStdString(name);
}

/// A factor between reals and 8-bit numbers. The bounds keep products and quotients of two of them finite.
bool isMultiplier(float value)
{
    return value >= 1e-9F && value <= 1e9F;
}

float multiplierBehind(const Tensor &tensor)
{
    float multiplier = 0;
    std::memcpy(&multiplier, tensor.data.data() + tensor.elements, sizeof multiplier);
    return multiplier;
}

const std::int8_t *weightsOf(const Tensor &tensor)
{
    return reinterpret_cast<const std::int8_t *>(tensor.data.data());
}

/// The greatest magnitude, which a file quantised by the rule of the format brings to 127.
int greatestMagnitude(const EmbeddingTable &table, int width)
{
    const std::size_t count = std::size_t(table.rows) * std::size_t(width);
    int least = 0;
    int most = 0;
    for (std::size_t index = 0; index < count; ++index) {
        least = std::min<int>(least, table.weights[index]);
        most = std::max<int>(most, table.weights[index]);
    }
    return std::max(most, -least);
}

} // namespace

StudentModel::StudentModel(ModelFile file)
    : m_file(std::move(file))
    , m_settings(ModelSettings::read(m_file))
{
    m_shared = m_file.find("Wemb") != nullptr;
    const std::string targetName = m_shared ? "Wemb" : "decoder_Wemb";
    m_target = embedding(targetName);
    m_source = m_shared ? m_target : embedding("encoder_Wemb");
    for (int index = 1; index <= m_settings.encoderDepth; ++index) {
        const std::string prefix = "encoder_l" + std::to_string(index);
        m_encoder.push_back({attention(prefix + "_self"), feedForward(prefix + "_ffn")});
    }
    const int width = m_settings.width;
    for (int index = 1; index <= m_settings.decoderDepth; ++index) {
        const std::string prefix = "decoder_l" + std::to_string(index);
        const std::string recurrent = prefix + "_rnn";
        m_decoder.push_back(
            {{matrix(recurrent + "_W", width, width), {}}, affine(recurrent, "f", width, width),
                norm(recurrent + "_ffn"), attention(prefix + "_context"), feedForward(prefix + "_ffn")});
    }
    m_output = outputLayer(targetName);
}

void StudentModel::splitOutput(WorkerTeam &team)
{
    const QuantizedMatrix &matrix = m_output.matrix;
    if (!DigitMatrix::takes(matrix.depth))
        return;
    const auto release = [&](int first, int count) {
        const std::size_t width = std::size_t(m_settings.width);
        const std::span rows(m_target.weights + std::size_t(first) * width, std::size_t(count) * width);
        m_file.release(std::as_bytes(rows));
    };
    release(0, m_target.rows);
    m_digits = std::make_unique<const DigitMatrix>(matrix, team, release);
    // Whoever read the neighbours may have brought back what had been released.
    release(0, m_target.rows);
    m_output.digits = m_digits.get();
    if (matrix.weights != m_target.weights)
        return;
    m_target.digits = m_digits.get();
    if (m_shared)
        m_source.digits = m_digits.get();
}

const Tensor &StudentModel::tensor(const std::string &name, TensorType type, int rows, int columns) const
{
    const Tensor *found = m_file.find(name);
    if (!found)
        m_file.fail(EngineError::Case::unsupported, QStringLiteral("no %1").arg(shown(name)));
    if (found->type != type)
        m_file.fail(EngineError::Case::unsupported,
            QStringLiteral("%1 of type 0x%2").arg(shown(name)).arg(std::uint64_t(found->type), 0, 16));
    if (found->shape != std::vector<std::int32_t> {rows, columns})
        m_file.fail(EngineError::Case::damaged, QStringLiteral("shape of %1").arg(shown(name)));
    return *found;
}

std::span<const float> StudentModel::floats(const std::string &name, int count) const
{
    const Tensor &found = tensor(name, TensorType::float32, 1, count);
    const auto *first = static_cast<const float *>(static_cast<const void *>(found.data.data()));
    const std::span<const float> values(first, std::size_t(count));
    if (!std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); }))
        m_file.fail(EngineError::Case::damaged, QStringLiteral("%1 is not finite").arg(shown(name)));
    return values;
}

float StudentModel::scalar(const std::string &name) const
{
    const float value = floats(name, 1).front();
    if (!isMultiplier(value))
        m_file.fail(EngineError::Case::damaged, QStringLiteral("%1 is no multiplier").arg(shown(name)));
    return value;
}

QuantizedMatrix StudentModel::matrix(const std::string &name, int depth, int outputs) const
{
    const Tensor &found = tensor(name, TensorType::quantizedInt8, depth, outputs);
    const float multiplier = multiplierBehind(found);
    if (!isMultiplier(multiplier))
        m_file.fail(EngineError::Case::damaged, QStringLiteral("multiplier of %1").arg(shown(name)));
    return {weightsOf(found), depth, outputs, multiplier, scalar(name + "_QuantMultA")};
}

AffineLayer StudentModel::affine(
    const std::string &prefix, const std::string &suffix, int depth, int outputs) const
{
    return {matrix(prefix + "_W" + suffix, depth, outputs), floats(prefix + "_b" + suffix, outputs)};
}

LayerNorm StudentModel::norm(const std::string &prefix) const
{
    return {floats(prefix + "_ln_scale", m_settings.width), floats(prefix + "_ln_bias", m_settings.width)};
}

AttentionLayer StudentModel::attention(const std::string &prefix) const
{
    const int width = m_settings.width;
    return {affine(prefix, "q", width, width), affine(prefix, "k", width, width),
        affine(prefix, "v", width, width), affine(prefix, "o", width, width), norm(prefix + "_Wo")};
}

FeedForwardLayer StudentModel::feedForward(const std::string &prefix) const
{
    return {affine(prefix, "1", m_settings.width, m_settings.innerWidth),
        affine(prefix, "2", m_settings.innerWidth, m_settings.width), norm(prefix + "_ffn")};
}

EmbeddingTable StudentModel::embedding(const std::string &name) const
{
    const Tensor *found = m_file.find(name);
    if (!found)
        m_file.fail(EngineError::Case::unsupported, QStringLiteral("no %1").arg(shown(name)));
    // End of sentence and unknown word come first; the kernels take outputs in groups of eight.
    const int rows = found->shape.front();
    if (rows < 8 || rows % 8 != 0)
        m_file.fail(
            EngineError::Case::unsupported, QStringLiteral("%1 words in %2").arg(rows).arg(shown(name)));
    const Tensor &checked = tensor(name, TensorType::quantizedInt8, rows, m_settings.width);
    const float multiplier = multiplierBehind(checked);
    if (!isMultiplier(multiplier))
        m_file.fail(EngineError::Case::damaged, QStringLiteral("multiplier of %1").arg(shown(name)));
    return {weightsOf(checked), rows, multiplier};
}

AffineLayer StudentModel::outputLayer(const std::string &embeddingName)
{
    AffineLayer layer;
    layer.bias = floats("decoder_ff_logit_out_b", m_target.rows);
    layer.matrix = {m_target.weights, m_settings.width, m_target.rows, m_target.multiplier, 0};
    for (const std::string &name : {embeddingName + "_QuantMultA", std::string("none_QuantMultA")}) {
        if (layer.matrix.inputMultiplier == 0 && m_file.find(name))
            layer.matrix.inputMultiplier = scalar(name);
    }
    if (layer.matrix.inputMultiplier == 0)
        m_file.fail(
            EngineError::Case::unsupported, QStringLiteral("no %1_QuantMultA").arg(shown(embeddingName)));

    // The output's weights are scaled so that the greatest is 127. Files written by the format's own rule
    // are.
    const int greatest = greatestMagnitude(m_target, m_settings.width);
    if (greatest == 0)
        m_file.fail(EngineError::Case::damaged, QStringLiteral("%1 is empty").arg(shown(embeddingName)));
    if (greatest == 127)
        return layer;
    const float toReal = 1.0F / m_target.multiplier;
    const float multiplier = 127.0F / (static_cast<float>(greatest) * toReal);
    const std::size_t count = std::size_t(m_target.rows) * std::size_t(m_settings.width);
    m_requantized.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        const float real = static_cast<float>(m_target.weights[index]) * toReal;
        m_requantized[index]
            = static_cast<std::int8_t>(std::clamp(std::nearbyint(real * multiplier), -127.0F, 127.0F));
    }
    layer.matrix.weights = m_requantized.data();
    layer.matrix.weightMultiplier = multiplier;
    return layer;
}

} // namespace lumaphone::engine
