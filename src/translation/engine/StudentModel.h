#pragma once

#include "translation/engine/DigitMatrix.h"
#include "translation/engine/ModelFile.h"
#include "translation/engine/ModelSettings.h"
#include "translation/engine/QuantizedMatrix.h"
#include "translation/engine/WorkerTeam.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lumaphone::engine {

/// y = x W + b. Layers without a bias have an empty one.
struct AffineLayer
{
    QuantizedMatrix matrix;
    std::span<const float> bias;
    const DigitMatrix *digits = nullptr; ///< the same weights, if they were split
};

struct LayerNorm
{
    std::span<const float> scale;
    std::span<const float> bias;
};

struct AttentionLayer
{
    AffineLayer query;
    AffineLayer key;
    AffineLayer value;
    AffineLayer output;
    LayerNorm norm;
};

struct FeedForwardLayer
{
    AffineLayer inner;
    AffineLayer outer;
    LayerNorm norm;
};

struct EncoderLayer
{
    AttentionLayer attention;
    FeedForwardLayer feedForward;
};

struct DecoderLayer
{
    AffineLayer input; ///< of the recurrent unit
    AffineLayer forget; ///< its gate
    LayerNorm recurrentNorm;
    AttentionLayer attention; ///< over the encoded sentence
    FeedForwardLayer feedForward;
};

/// The vectors of a vocabulary; a real element is weight / multiplier.
struct EmbeddingTable
{
    const std::int8_t *weights = nullptr;
    int rows = 0;
    float multiplier = 1;
    const DigitMatrix *digits = nullptr; ///< the same weights, if they were split
};

/// The weights of a Marian student: a Transformer encoder and a decoder of SSRU layers. They lie in the model
/// file.
class StudentModel
{
public:
    /// Finds and checks everything the architecture needs. Throws EngineError.
    explicit StudentModel(ModelFile file);

    const QString &path() const { return m_file.path(); }
    const ModelSettings &settings() const { return m_settings; }
    const EmbeddingTable &source() const { return m_source; }
    const EmbeddingTable &target() const { return m_target; }
    /// Whether one vocabulary serves both languages.
    bool isShared() const { return m_shared; }
    const std::vector<EncoderLayer> &encoder() const { return m_encoder; }
    const std::vector<DecoderLayer> &decoder() const { return m_decoder; }
    /// From the decoder to one score per word.
    const AffineLayer &output() const { return m_output; }

    /// Splits the output's weights into digits, if their shape allows it: they take the place of the weights
    /// in memory. For models whose output is searched as a whole.
    void splitOutput(WorkerTeam &team);

private:
    const Tensor &tensor(const std::string &name, TensorType type, int rows, int columns) const;
    float scalar(const std::string &name) const;
    std::span<const float> floats(const std::string &name, int count) const;
    QuantizedMatrix matrix(const std::string &name, int depth, int outputs) const;
    AffineLayer affine(const std::string &prefix, const std::string &suffix, int depth, int outputs) const;
    LayerNorm norm(const std::string &prefix) const;
    AttentionLayer attention(const std::string &prefix) const;
    FeedForwardLayer feedForward(const std::string &prefix) const;
    EmbeddingTable embedding(const std::string &name) const;
    AffineLayer outputLayer(const std::string &embeddingName);

    ModelFile m_file;
    ModelSettings m_settings;
    bool m_shared = false;
    EmbeddingTable m_source;
    EmbeddingTable m_target;
    std::vector<EncoderLayer> m_encoder;
    std::vector<DecoderLayer> m_decoder;
    AffineLayer m_output;
    std::unique_ptr<const DigitMatrix> m_digits;
    std::vector<std::int8_t> m_requantized; ///< empty unless the output needs weights of another scale
};

} // namespace lumaphone::engine
