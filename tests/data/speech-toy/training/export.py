"""Writes the networks in the shapes that the runtime library knows."""
import numpy as np
import onnx
import torch
from onnx import TensorProto, helper, numpy_helper
from torch import nn

CHUNK, STEP = 41, 32
CAUTION = 2.5


def _write_metadata(path, values):
    model = onnx.load(path)
    del model.metadata_props[:]
    for key, value in values.items():
        entry = model.metadata_props.add()
        entry.key, entry.value = key, str(value)
    onnx.save(model, path)


class _NemoShape(nn.Module):
    def __init__(self, network):
        super().__init__()
        self.network = network

    def forward(self, audio_signal, length, channel, time, channel_length):
        state = time.squeeze(2).transpose(0, 1).contiguous()
        scores, state = self.network(audio_signal.transpose(1, 2), state)
        return scores, length // 4, channel + 0.0, state.transpose(0, 1).unsqueeze(2), channel_length + length


def export_streaming(network, tokens, path):
    inputs = ["audio_signal", "length", "cache_last_channel", "cache_last_time", "cache_last_channel_len"]
    outputs = ["logprobs", "encoded_lengths", "cache_last_channel_next", "cache_last_time_next",
               "cache_last_channel_len_next"]
    example = (torch.randn(1, 80, CHUNK), torch.tensor([CHUNK]), torch.zeros(1, 1, 1, 1), torch.zeros(1, 2, 1, 128),
               torch.zeros(1, dtype=torch.int64))
    torch.onnx.export(_NemoShape(network), example, str(path), opset_version=13, input_names=inputs,
                      output_names=outputs, dynamic_axes={name: {0: "N"} for name in inputs + outputs})
    _write_metadata(path, {
        "window_size": CHUNK, "chunk_shift": STEP, "subsampling_factor": 4, "vocab_size": tokens - 1,
        "cache_last_channel_dim1": 1, "cache_last_channel_dim2": 1, "cache_last_channel_dim3": 1,
        "cache_last_time_dim1": 2, "cache_last_time_dim2": 1, "cache_last_time_dim3": 128,
        "model_type": "EncDecCTCModelBPE", "comment": "toy network"})


class _SenseVoiceShape(nn.Module):
    """Puts language, emotion, event and number style in front of the text, as four frames of certain tokens."""

    def __init__(self, network, tokens):
        super().__init__()
        self.network, self.tokens = network, tokens
        self.register_buffer("language_numbers", torch.tensor([3, 4, 7, 11, 12, -1], dtype=torch.int32))
        self.register_buffer("caution", torch.tensor([[-CAUTION, CAUTION]]))
        emotion = torch.full((1, tokens), -30.0)
        emotion[0, 7] = 30
        self.register_buffer("emotion", emotion)

    def forward(self, x, x_length, language, text_norm):
        text, languages, events = self.network(x)
        # Speech is only what certainly is: the network is sure of its phrases, and less so of other sounds.
        events = events + self.caution
        count, tokens = x.shape[0], self.tokens
        # A language that is asked for wins over the one that is heard.
        languages = languages + 100 * (language.unsqueeze(1) == self.language_numbers.unsqueeze(0)).float()
        never = torch.full((1, 1), -30.0)
        written = (text_norm == 14).float().unsqueeze(1) * 60 - 30
        marks = torch.stack([
            torch.cat([never.expand(count, 1), languages, never.expand(count, tokens - 7)], 1),
            self.emotion.expand(count, tokens),
            torch.cat([never.expand(count, 8), events, never.expand(count, tokens - 10)], 1),
            torch.cat([never.expand(count, 10), written, -written, never.expand(count, tokens - 12)], 1)], 1)
        return torch.cat([marks, text], 1) + x_length.float().sum() * 0


def export_whole(network, tokens, mean, deviation, path):
    example = (torch.randn(1, 50, 560), *(torch.tensor([value], dtype=torch.int32) for value in (50, 0, 14)))
    names = ["x", "x_length", "language", "text_norm"]
    torch.onnx.export(_SenseVoiceShape(network, tokens), example, str(path), opset_version=13, input_names=names,
                      output_names=["logits"],
                      dynamic_axes={**{name: {0: "N"} for name in names}, "x": {0: "N", 1: "T"},
                                    "logits": {0: "N", 1: "L"}})
    _write_metadata(path, {
        "lfr_window_size": 7, "lfr_window_shift": 6, "normalize_samples": 0, "with_itn": 14, "without_itn": 15,
        "lang_auto": 0, "lang_zh": 3, "lang_en": 4, "lang_yue": 7, "lang_ja": 11, "lang_ko": 12, "vocab_size": tokens,
        "neg_mean": ",".join(f"{value:.6g}" for value in -mean),
        "inv_stddev": ",".join(f"{value:.6g}" for value in 1 / deviation),
        "model_type": "sense_voice_ctc", "comment": "toy network"})


def export_voice_detector(path, threshold_db=-42, slope_db=2.5, decay=0.8):
    """Speech is what is louder than the threshold; the state lets it fade."""
    constants, nodes = [], []

    def constant(name, value):
        constants.append(numpy_helper.from_array(np.asarray(value), name))
        return name

    def node(kind, inputs, output, **attributes):
        nodes.append(helper.make_node(kind, inputs, [output], **attributes))
        return output

    node("Mul", ["input", "input"], "squares")
    node("ReduceMean", ["squares"], "power", axes=[1], keepdims=1)
    node("Add", ["power", constant("tiny", np.float32(1e-10))], "positive")
    node("Mul", [node("Log", ["positive"], "logarithm"), constant("decibels", np.float32(10 / np.log(10)))], "level")
    node("Sub", ["level", constant("threshold", np.float32(threshold_db))], "above")
    node("Sigmoid", [node("Div", ["above", constant("slope", np.float32(slope_db))], "scaled")], "now")
    zero, one = constant("zero", np.array([0])), constant("one", np.array([1]))
    node("Slice", ["state", zero, one, constant("last_axis", np.array([2]))], "part")
    node("Slice", ["part", zero, one, constant("first_axis", np.array([0]))], "corner")
    node("Reshape", ["corner", constant("scalar", np.array([1, 1]))], "before")
    node("Max", ["now", node("Mul", ["before", constant("decay", np.float32(decay))], "fading")], "output")
    node("Reshape", ["output", constant("cube", np.array([1, 1, 1]))], "kept")
    node("Add", [constant("empty", np.zeros((2, 1, 128), np.float32)), "kept"], "stateN")
    value = helper.make_tensor_value_info
    graph = helper.make_graph(
        nodes, "vad",
        [value("input", TensorProto.FLOAT, [1, "n"]), value("state", TensorProto.FLOAT, [2, 1, 128]),
         value("sr", TensorProto.INT64, [1])],
        [value("output", TensorProto.FLOAT, [1, 1]), value("stateN", TensorProto.FLOAT, [2, 1, 128])], constants)
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)])
    model.ir_version = 8
    onnx.checker.check_model(model)
    onnx.save(model, str(path))
