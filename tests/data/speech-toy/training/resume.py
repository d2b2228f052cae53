"""Reads the whole-segment network back from its file, so that it can go on learning."""
import numpy as np
import onnx
import torch
from onnx import numpy_helper


def _reordered(gates):
    """Of a recurrent part: the file has update, reset and new one after the other, the library reset first."""
    update, reset, new = np.split(gates, 3)
    return np.concatenate([reset, update, new])


def load_whole(network, path):
    """Fills the network and returns the mean and the deviation of its features."""
    model = onnx.load(str(path))
    values = {value.name: numpy_helper.to_array(value) for value in model.graph.initializer}
    weights = {}
    layer = 0
    for node in model.graph.node:
        known = [values[name] for name in node.input if name in values]
        if node.op_type == "GRU":
            for direction, end in enumerate(["", "_reverse"]):
                parts = {"weight_ih": known[0][direction], "weight_hh": known[1][direction]}
                parts["bias_ih"], parts["bias_hh"] = np.split(known[2][direction], 2)
                weights |= {f"memory.{name}_l{layer}{end}": _reordered(part) for name, part in parts.items()}
            layer += 1
        elif node.op_type == "MatMul" and known:
            name = {560: "input"}.get(len(known[0]), "attention" if known[0].shape[1] == 1 else "output")
            weights[f"{name}.weight"] = known[0].T
            follower = next(each for each in model.graph.node if node.output[0] in each.input)
            weights[f"{name}.bias"] = next(values[name] for name in follower.input if name in values)
        elif node.op_type == "Gemm":
            name = "event" if len(known[0]) == 2 else "language"
            weights[f"{name}.weight"], weights[f"{name}.bias"] = known
    network.load_state_dict({name: torch.from_numpy(value.copy()) for name, value in weights.items()})
    metadata = {entry.key: entry.value for entry in model.metadata_props}
    numbers = {key: np.array([float(each) for each in metadata[key].split(",")], np.float32)
               for key in ("neg_mean", "inv_stddev")}
    return -numbers["neg_mean"], 1 / numbers["inv_stddev"]
