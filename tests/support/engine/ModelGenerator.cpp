#include "support/engine/ModelGenerator.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <set>

namespace lumaphone::engine::test {
namespace {

constexpr std::uint64_t int8Type = 0x101;
constexpr std::uint64_t float32Type = 0x404;
constexpr std::uint64_t quantizedType = 0x4101;
constexpr std::size_t alignment = 256;

template<class Number> void append(std::string &bytes, Number number)
{
    std::array<char, sizeof number> raw;
    std::memcpy(raw.data(), &number, sizeof number);
    bytes.append(raw.data(), raw.size());
}

void pad(std::string &bytes)
{
    bytes.append((alignment - bytes.size() % alignment) % alignment, '\0');
}

class Generator
{
public:
    explicit Generator(const ModelShape &shape)
        : m_shape(shape)
        , m_random(shape.seed)
    {
        // A byte of randomness becomes a weight of a normal distribution: quantiles, found by drawing and
        // sorting.
        std::normal_distribution<double> normal(0, shape.spread);
        std::vector<double> drawn(256 * 64);
        for (double &value : drawn)
            value = normal(m_random);
        std::sort(drawn.begin(), drawn.end());
        const double most = shape.greatestWeight;
        for (std::size_t index = 0; index < m_quantiles.size(); ++index)
            m_quantiles[index]
                = static_cast<char>(std::lround(std::clamp(drawn[index * 64 + 32], -most, most)));
    }

    std::vector<GeneratedTensor> tensors()
    {
        for (int layer = 1; layer <= m_shape.decoderDepth; ++layer) {
            const std::string prefix = "decoder_l" + std::to_string(layer);
            attention(prefix + "_context");
            feedForward(prefix + "_ffn");
            weights(prefix + "_rnn_W", m_shape.width, m_shape.width, m_shape.recurrentGain);
            affine(prefix + "_rnn", "f", m_shape.width, m_shape.width, m_shape.recurrentGain);
            norm(prefix + "_rnn_ffn");
        }
        for (int layer = 1; layer <= m_shape.encoderDepth; ++layer) {
            const std::string prefix = "encoder_l" + std::to_string(layer);
            attention(prefix + "_self");
            feedForward(prefix + "_ffn");
        }
        embeddings();
        std::normal_distribution<float> normal(0, 0.3F);
        std::vector<float> bias(std::size_t(m_shape.targetWords));
        for (float &value : bias)
            value = normal(m_random);
        bias.front() += static_cast<float>(m_shape.endBias);
        floats("decoder_ff_logit_out_b", bias);
        settings();
        std::sort(
            m_tensors.begin(), m_tensors.end(), [](const auto &a, const auto &b) { return a.name < b.name; });
        return std::move(m_tensors);
    }

private:
    /// Makes the weights of each output sum to zero, so that inputs that are never negative do not drown what
    /// differs.
    static void balanceRows(std::string &data, std::size_t depth)
    {
        for (std::size_t row = 0; row < data.size(); row += depth) {
            for (std::size_t index = 0; index < depth / 2; ++index)
                data[row + depth / 2 + index] = static_cast<char>(-data[row + index]);
        }
    }

    void quantized(
        const std::string &name, int rows, int columns, double multiplier, bool areRowsBalanced = false)
    {
        std::string data(std::size_t(rows) * std::size_t(columns), '\0');
        for (std::size_t index = 0; index < data.size(); index += 8) {
            const std::uint64_t drawn = m_random();
            for (std::size_t byte = 0; byte < std::min<std::size_t>(8, data.size() - index); ++byte)
                data[index + byte] = m_quantiles[(drawn >> (8 * byte)) & 0xFF];
        }
        data.front() = static_cast<char>(m_shape.greatestWeight);
        if (areRowsBalanced)
            balanceRows(data, std::size_t(rows));
        append(data, static_cast<float>(multiplier));
        pad(data);
        m_tensors.push_back({name, quantizedType, {rows, columns}, std::move(data)});
    }

    void floats(const std::string &name, const std::vector<float> &values)
    {
        std::string data;
        for (const float value : values)
            append(data, value);
        pad(data);
        m_tensors.push_back({name, float32Type, {1, int(values.size())}, std::move(data)});
    }

    void normalFloats(const std::string &name, int count, float mean, float deviation)
    {
        std::normal_distribution<float> normal(mean, deviation);
        std::vector<float> values(static_cast<std::size_t>(count));
        for (float &value : values)
            value = normal(m_random);
        floats(name, values);
    }

    float inputMultiplier() { return std::uniform_real_distribution<float>(26, 36)(m_random); }

    void weights(const std::string &name, int depth, int outputs, double gain)
    {
        const double multiplier = m_shape.spread * std::sqrt(double(depth)) / gain;
        quantized(
            name, depth, outputs, multiplier * std::uniform_real_distribution<double>(0.9, 1.1)(m_random));
        floats(name + "_QuantMultA", {inputMultiplier()});
    }

    void affine(const std::string &prefix, const std::string &suffix, int depth, int outputs, double gain)
    {
        weights(prefix + "_W" + suffix, depth, outputs, gain);
        normalFloats(prefix + "_b" + suffix, outputs, 0, 0.2F);
    }

    void norm(const std::string &prefix)
    {
        normalFloats(prefix + "_ln_scale", m_shape.width, 1, 0.1F);
        normalFloats(prefix + "_ln_bias", m_shape.width, 0, 0.1F);
    }

    void attention(const std::string &prefix)
    {
        for (const char *suffix : {"q", "k", "v", "o"})
            affine(prefix, suffix, m_shape.width, m_shape.width, m_shape.attentionGain);
        norm(prefix + "_Wo");
    }

    void feedForward(const std::string &prefix)
    {
        affine(prefix, "1", m_shape.width, m_shape.innerWidth, m_shape.feedForwardGain);
        affine(prefix, "2", m_shape.innerWidth, m_shape.width, m_shape.feedForwardGain);
        norm(prefix + "_ffn");
    }

    void embeddings()
    {
        const double multiplier = m_shape.spread * std::sqrt(double(m_shape.width)) / m_shape.embeddingGain;
        const bool isShared = m_shape.sourceWords == 0;
        if (!isShared)
            quantized("encoder_Wemb", m_shape.sourceWords, m_shape.width, multiplier);
        const std::string name = isShared ? "Wemb" : "decoder_Wemb";
        quantized(name, m_shape.targetWords, m_shape.width, multiplier);
        const float scale = inputMultiplier();
        floats(name + "_QuantMultA", {scale});
        floats("none_QuantMultA", {scale});
    }

    void settings()
    {
        const bool isShared = m_shape.sourceWords == 0;
        const auto flag = [](bool value) {
            return std::string(value ? "true" : "false");
        };
        const auto number = [](int value) {
            return std::to_string(value);
        };
        std::vector<std::string> lines = {"bert-train-type-embeddings: true", "bert-type-vocab-size: 2",
            "dec-cell: ssru", "dec-cell-base-depth: 2", "dec-cell-high-depth: 1",
            "dec-depth: " + number(m_shape.decoderDepth), "dim-emb: " + number(m_shape.width),
            "dim-rnn: 1024",
            "dim-vocabs:\n  - " + number(isShared ? m_shape.targetWords : m_shape.sourceWords) + "\n  - "
                + number(m_shape.targetWords),
            "enc-cell: gru", "enc-cell-depth: 1", "enc-depth: " + number(m_shape.encoderDepth),
            "enc-type: bidirectional", "factors-combine: sum", "factors-dim-emb: 0", "input-types:\n  []",
            "layer-normalization: false", "lemma-dependency: \"\"", "lemma-dim-emb: 0",
            "output-omit-bias: false", "right-left: false", "skip: false",
            "tied-embeddings: " + flag(!isShared), "tied-embeddings-all: " + flag(isShared),
            "tied-embeddings-src: false", "transformer-aan-activation: swish", "transformer-aan-depth: 2",
            "transformer-aan-nogate: false", "transformer-decoder-autoreg: rnn",
            "transformer-decoder-dim-ffn: 0", "transformer-decoder-ffn-depth: 0", "transformer-dim-aan: 2048",
            "transformer-dim-ffn: " + number(m_shape.innerWidth), "transformer-ffn-activation: relu",
            "transformer-ffn-depth: 2", "transformer-guided-alignment-layer: last",
            "transformer-heads: " + number(m_shape.heads), "transformer-no-affine: false",
            "transformer-no-bias: false", "transformer-no-projection: false", "transformer-pool: false",
            "transformer-postprocess: dan", "transformer-postprocess-emb: d",
            "transformer-postprocess-top: \"\"", "transformer-preprocess: \"\"",
            "transformer-rnn-projection: false", "transformer-tied-layers:\n  []",
            "transformer-train-position-embeddings: false", "type: transformer", "ulr: false",
            "ulr-dim-emb: 0", "ulr-trainable-transformation: false", "version: v1.9.56 generated"};
        for (const std::string &extra : m_shape.extraSettings) {
            const std::string key = extra.substr(0, extra.find(':') + 1);
            std::erase_if(lines, [&](const std::string &line) { return line.starts_with(key); });
            lines.push_back(extra);
        }
        std::string text;
        for (const std::string &line : lines)
            text += line + '\n';
        text += '\0';
        const int size = int(text.size());
        m_tensors.push_back({"special:model.yml", int8Type, {size}, std::move(text)});
    }

    ModelShape m_shape;
    std::mt19937_64 m_random;
    std::array<char, 256> m_quantiles;
    std::vector<GeneratedTensor> m_tensors;
};

ModelShape student(int width, int innerWidth, int decoderDepth, int words)
{
    ModelShape shape;
    shape.width = width;
    shape.innerWidth = innerWidth;
    shape.encoderDepth = 6;
    shape.decoderDepth = decoderDepth;
    shape.targetWords = words;
    return shape;
}

} // namespace

ModelShape smallStudent()
{
    return student(256, 1536, 2, 32000);
}

ModelShape middleStudent()
{
    return student(384, 1536, 4, 32000);
}

ModelShape largeStudent()
{
    return student(512, 2048, 2, 64000);
}

std::string generateModel(const ModelShape &shape)
{
    return writeModelFile(Generator(shape).tensors());
}

std::string writeModelFile(const std::vector<GeneratedTensor> &tensors)
{
    std::string bytes;
    append<std::uint64_t>(bytes, 1);
    append<std::uint64_t>(bytes, tensors.size());
    for (const GeneratedTensor &tensor : tensors) {
        append<std::uint64_t>(bytes, tensor.name.size() + 1);
        append<std::uint64_t>(bytes, tensor.type);
        append<std::uint64_t>(bytes, tensor.shape.size());
        append<std::uint64_t>(bytes, tensor.data.size());
    }
    for (const GeneratedTensor &tensor : tensors)
        bytes.append(tensor.name).push_back('\0');
    for (const GeneratedTensor &tensor : tensors) {
        for (const std::int32_t extent : tensor.shape)
            append(bytes, extent);
    }
    const std::size_t position = bytes.size() + sizeof(std::uint64_t);
    const std::uint64_t padding = (position / alignment + 1) * alignment - position;
    append(bytes, padding);
    bytes.append(padding, '\0');
    for (const GeneratedTensor &tensor : tensors)
        bytes.append(tensor.data);
    return bytes;
}

std::string generateShortlist(int sourceWords, int targetWords, int always, int listLength, unsigned seed)
{
    std::mt19937_64 random(seed);
    std::string body;
    append<std::uint64_t>(body, std::uint64_t(always));
    append<std::uint64_t>(body, std::uint64_t(listLength));
    append<std::uint64_t>(body, std::uint64_t(sourceWords) + 1);
    append<std::uint64_t>(body, std::uint64_t(sourceWords) * std::uint64_t(listLength));
    for (int word = 0; word <= sourceWords; ++word)
        append<std::uint64_t>(body, std::uint64_t(word) * std::uint64_t(listLength));
    std::uniform_int_distribution<std::uint32_t> anyWord(0, std::uint32_t(targetWords) - 1);
    for (int word = 0; word < sourceWords; ++word) {
        std::set<std::uint32_t> list;
        while (int(list.size()) < listLength)
            list.insert(anyWord(random));
        for (const std::uint32_t listed : list)
            append(body, listed);
    }
    // The reference checks this sum; the engine does not.
    std::uint64_t sum = 0;
    for (std::size_t index = 0; index + sizeof sum <= body.size(); index += sizeof sum) {
        std::uint64_t number = 0;
        std::memcpy(&number, body.data() + index, sizeof number);
        sum ^= number + 0x9e3779b9 + (sum << 6) + (sum >> 2);
    }
    std::string bytes;
    append<std::uint64_t>(bytes, 0xF11A48D5013417F5);
    append(bytes, sum);
    return bytes + body;
}

} // namespace lumaphone::engine::test
