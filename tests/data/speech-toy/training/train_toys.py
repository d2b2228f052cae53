"""Trains the toy networks and writes them beside the phrases. README.md tells more."""
import argparse
import pathlib

import numpy as np
import torch

from export import export_streaming, export_voice_detector, export_whole
from mixtures import examples
from networks import Streaming, Whole, train
from phrases import HERE, vocabulary
from render import render
from resume import load_whole


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--work", required=True, help="folder for renderings")
    parser.add_argument("--minutes", type=float, default=12, help="training time of each network")
    parser.add_argument("--further", action="store_true",
                        help="only let the network for whole segments learn further, from fewer voices")
    parser.add_argument("--check", action="store_true", help="a few steps of everything, written to the work folder")
    arguments = parser.parse_args()
    work = pathlib.Path(arguments.work)
    target = work if arguments.check else HERE
    torch.set_num_threads(2)

    renderings = render(work / "wav", *((2, 1, 1) if arguments.check else (None, 24, 4) if arguments.further else ()))
    streaming, whole = examples(renderings, 40 if arguments.check else 5000 if arguments.further else 20000)
    seconds = 3 if arguments.check else arguments.minutes * 60
    tokens = len(vocabulary())

    network = Whole(tokens)
    if arguments.further:
        mean, deviation = load_whole(network, HERE / "toy-sense.onnx")
    else:
        sample = np.concatenate([features for features, _, _ in whole[:1500]])
        mean, deviation = sample.mean(0), sample.std(0) + 1e-3
    whole = [((features - mean) / deviation, labels, language) for features, labels, language in whole]
    train(network, whole, seconds, 5e-4 if arguments.further else 2e-3)
    export_whole(network, tokens, mean, deviation, target / "toy-sense.onnx")
    if not arguments.further:
        export_streaming(train(Streaming(tokens), streaming, seconds), tokens, target / "toy-stream-ctc.onnx")
        export_voice_detector(target / "toy-vad.onnx")


if __name__ == "__main__":
    main()
