"""Writes a SenseVoice network of the real size with random weights: nothing can be recognised with it, but every decode
costs what a real one costs. Needs python3-numpy and python3-onnx.

    python3 random_network.py FOLDER     # writes FOLDER/model.int8.onnx (237 MB) and FOLDER/tokens.txt
"""
import pathlib
import sys

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

LAYERS, WIDTH, INNER, HEADS, TOKENS, INPUT = 70, 512, 2048, 4, 25055, 560


class Graph:
    """Nodes and constants, added one by one."""

    def __init__(self):
        self.nodes, self.constants = [], []
        self.chance = np.random.default_rng(0)

    def constant(self, name, value):
        self.constants.append(numpy_helper.from_array(value, name))
        return name

    def node(self, kind, inputs, outputs, **attributes):
        names = [outputs] if isinstance(outputs, str) else outputs
        self.nodes.append(helper.make_node(kind, inputs, names, **attributes))
        return outputs

    def linear(self, x, rows, columns, name):
        """Quantised to 8 bits, the activations at run time."""
        self.constant(name + ".w", self.chance.integers(0, 256, (rows, columns), dtype=np.uint8))
        self.constant(name + ".zero", np.array(128, np.uint8))
        self.constant(name + ".scale", np.array(1 / np.sqrt(rows) / 74, np.float32))
        self.constant(name + ".bias", np.zeros(columns, np.float32))
        self.node("DynamicQuantizeLinear", [x], [name + ".q", name + ".qs", name + ".qz"])
        self.node("MatMulInteger", [name + ".q", name + ".w", name + ".qz", name + ".zero"], name + ".i")
        self.node("Cast", [name + ".i"], name + ".f", to=TensorProto.FLOAT)
        self.node("Mul", [name + ".qs", name + ".scale"], name + ".m")
        self.node("Mul", [name + ".f", name + ".m"], name + ".y")
        return self.node("Add", [name + ".y", name + ".bias"], name + ".out")

    def normalise(self, x, name):
        self.constant(name + ".g", np.ones(WIDTH, np.float32))
        self.constant(name + ".b", np.zeros(WIDTH, np.float32))
        return self.node("LayerNormalization", [x, name + ".g", name + ".b"], name + ".out", axis=-1, epsilon=1e-5)

    def heads(self, x, name, order):
        return self.node("Transpose", [self.node("Reshape", [x, "to_heads"], name + ".r")], name, perm=order)

    def attention(self, x, name):
        """Self-attention with a memory: a convolution over the values beside it."""
        mixed = self.linear(self.normalise(x, name + ".n1"), WIDTH, 3 * WIDTH, name + ".qkv")
        q, k, v = self.node("Split", [mixed, "thirds"], [name + ".q", name + ".k", name + ".v"], axis=-1)
        kernel = self.constant(name + ".kernel", (self.chance.standard_normal((WIDTH, 1, 11)) * 0.1).astype(np.float32))
        turned = self.node("Transpose", [v], name + ".vt", perm=[0, 2, 1])
        memory = self.node("Conv", [turned, kernel], name + ".c", group=WIDTH, pads=[5, 5], kernel_shape=[11])
        memory = self.node("Add", [self.node("Transpose", [memory], name + ".ct", perm=[0, 2, 1]), v], name + ".mem")
        scaled = self.node("Mul", [self.heads(q, name + ".qh", [0, 2, 1, 3]), "scale"], name + ".qs")
        scores = self.node("MatMul", [scaled, self.heads(k, name + ".kh", [0, 2, 3, 1])], name + ".s")
        weights = self.node("Softmax", [scores], name + ".sm", axis=-1)
        seen = self.node("MatMul", [weights, self.heads(v, name + ".vh", [0, 2, 1, 3])], name + ".av")
        seen = self.node("Transpose", [seen], name + ".at", perm=[0, 2, 1, 3])
        seen = self.linear(self.node("Reshape", [seen, "from_heads"], name + ".ar"), WIDTH, WIDTH, name + ".o")
        return self.node("Add", [x, self.node("Add", [seen, memory], name + ".oc")], name + ".res")

    def feed_forward(self, x, name):
        inner = self.linear(self.normalise(x, name + ".n2"), WIDTH, INNER, name + ".f1")
        outer = self.linear(self.node("Relu", [inner], name + ".relu"), INNER, WIDTH, name + ".f2")
        return self.node("Add", [x, outer], name + ".res2")


def build():
    graph = Graph()
    graph.constant("marks", graph.chance.standard_normal((1, 4, INPUT)).astype(np.float32))
    graph.constant("to_heads", np.array([1, -1, HEADS, WIDTH // HEADS]))
    graph.constant("from_heads", np.array([1, -1, WIDTH]))
    graph.constant("scale", np.array(1 / np.sqrt(WIDTH / HEADS), np.float32))
    graph.constant("thirds", np.array([WIDTH] * 3))
    x = graph.linear(graph.node("Concat", ["marks", "x"], "joined", axis=1), INPUT, WIDTH, "in")
    for layer in range(LAYERS):
        x = graph.feed_forward(graph.attention(x, f"layer{layer}"), f"layer{layer}")
    scores = graph.linear(graph.normalise(x, "last"), WIDTH, TOKENS, "out")
    # Inputs that do nothing would be removed.
    others = [graph.node("Cast", [name], name + ".f", to=TensorProto.FLOAT)
              for name in ("x_length", "language", "text_norm")]
    nothing = graph.node("Mul", [graph.node("Sum", others, "sum"), graph.constant("nought", np.array(0, np.float32))],
                         "nothing")
    graph.node("Add", [scores, nothing], "logits")

    value = helper.make_tensor_value_info
    inputs = [value("x", TensorProto.FLOAT, [1, "T", INPUT])]
    inputs += [value(name, TensorProto.INT32, [1]) for name in ("x_length", "language", "text_norm")]
    body = helper.make_graph(graph.nodes, "random", inputs, [value("logits", TensorProto.FLOAT, [1, "L", TOKENS])],
                             graph.constants)
    model = helper.make_model(body, opset_imports=[helper.make_opsetid("", 17)])
    model.ir_version = 8
    metadata = {"lfr_window_size": 7, "lfr_window_shift": 6, "normalize_samples": 0, "with_itn": 14, "without_itn": 15,
                "lang_auto": 0, "lang_zh": 3, "lang_en": 4, "lang_yue": 7, "lang_ja": 11, "lang_ko": 12,
                "vocab_size": TOKENS, "neg_mean": ",".join(["0"] * INPUT), "inv_stddev": ",".join(["0.1"] * INPUT),
                "model_type": "sense_voice_ctc", "comment": "random"}
    for key, content in metadata.items():
        entry = model.metadata_props.add()
        entry.key, entry.value = key, str(content)
    return model


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "model.int8.onnx").write_bytes(build().SerializeToString())
    names = ["<blk>"] + [f"t{number}" for number in range(1, TOKENS)]
    lines = [f"{name} {number}\n" for number, name in enumerate(names)]
    (folder / "tokens.txt").write_text("".join(lines), encoding="utf-8")


if __name__ == "__main__":
    main()
