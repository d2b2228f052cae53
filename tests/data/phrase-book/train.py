#!/usr/bin/env python3
"""Trains the demonstration models of this folder from its phrase book, one direction at a time:

    OMP_NUM_THREADS=1 /usr/bin/python3 train.py ja en

Needs Debian's python3-torch, python3-numpy and sentencepiece; about twenty minutes a direction on one core. Building and
testing need none of them: the models are kept beside this script.

The networks are Marian "student" models in miniature: a Transformer encoder, a decoder of SSRU layers, weights of 8 bits.
"""
import argparse
import math
import pathlib
import random
import struct
import subprocess
import time

import numpy
import torch
from torch import nn
from torch.nn import functional

import phrase_book

WIDTH, INNER, HEADS, ENCODER, DECODER = 128, 256, 8, 2, 1
END = 0
FOLDER = pathlib.Path(__file__).parent


def positions(length):
    half = WIDTH // 2
    angles = numpy.arange(length)[:, None] * 10000.0 ** (-numpy.arange(half)[None, :] / (half - 1))
    return torch.tensor(numpy.concatenate([numpy.sin(angles), numpy.cos(angles)], 1), dtype=torch.float32)


def rounded(values, multiplier):
    """What the 8-bit format keeps, with the gradient of the real values."""
    kept = torch.clamp(torch.round(values * multiplier), -127, 127) / multiplier
    return values + (kept - values).detach()


class Quantized(nn.Module):
    """y = x W + b. Remembers the greatest input, which sets the scale of the inputs' 8 bits."""

    def __init__(self, inputs, outputs, bias=True):
        super().__init__()
        self.weight = nn.Parameter(torch.empty(inputs, outputs))
        nn.init.xavier_uniform_(self.weight)
        self.bias = nn.Parameter(torch.zeros(outputs)) if bias else None
        self.register_buffer("greatest", torch.tensor(0.01))
        self.rounds = False

    def product(self, inputs, weight):
        if self.training:
            self.greatest = torch.maximum(self.greatest * 0.999, inputs.detach().abs().max())
        if self.rounds:
            weight = rounded(weight, 127 / weight.detach().abs().max())
            inputs = rounded(inputs, 127 / self.greatest)
        return inputs @ weight

    def forward(self, inputs):
        result = self.product(inputs, self.weight)
        return result if self.bias is None else result + self.bias


class Output(Quantized):
    def __init__(self, words):
        super().__init__(1, words)
        self.weight = None

    def forward(self, inputs, embedding):
        return self.product(inputs, embedding.T) + self.bias


class Attention(nn.Module):
    def __init__(self):
        super().__init__()
        self.q, self.k, self.v, self.o = (Quantized(WIDTH, WIDTH) for _ in range(4))
        self.norm = nn.LayerNorm(WIDTH, eps=1e-6)

    def forward(self, inputs, memory, mask):
        def heads(values):
            return values.view(values.shape[0], values.shape[1], HEADS, -1).transpose(1, 2)
        query, key, value = heads(self.q(inputs)), heads(self.k(memory)), heads(self.v(memory))
        scores = query @ key.transpose(2, 3) / math.sqrt(WIDTH / HEADS) + mask
        mixed = (scores.softmax(-1) @ value).transpose(1, 2).reshape(inputs.shape)
        return self.norm(inputs + dropped(self.o(mixed), self.training))


class FeedForward(nn.Module):
    def __init__(self):
        super().__init__()
        self.inner, self.outer = Quantized(WIDTH, INNER), Quantized(INNER, WIDTH)
        self.norm = nn.LayerNorm(WIDTH, eps=1e-6)

    def forward(self, inputs):
        return self.norm(inputs + dropped(self.outer(self.inner(inputs).relu()), self.training))


class Recurrent(nn.Module):
    def __init__(self):
        super().__init__()
        self.input, self.forget = Quantized(WIDTH, WIDTH, bias=False), Quantized(WIDTH, WIDTH)
        self.norm = nn.LayerNorm(WIDTH, eps=1e-6)

    def forward(self, inputs):
        gate = self.forget(inputs).sigmoid()
        fresh = (1 - gate) * self.input(inputs)
        state, states = torch.zeros_like(fresh[:, 0]), []
        for step in range(inputs.shape[1]):
            state = gate[:, step] * state + fresh[:, step]
            states.append(state)
        return self.norm(inputs + dropped(torch.stack(states, 1).relu(), self.training))


def dropped(values, training):
    return functional.dropout(values, 0.1, training)


class Student(nn.Module):
    def __init__(self, source_words, target_words, shared):
        super().__init__()
        self.shared = shared
        self.target = nn.Parameter(torch.randn(target_words, WIDTH) / math.sqrt(WIDTH))
        self.source = None if shared else nn.Parameter(torch.randn(source_words, WIDTH) / math.sqrt(WIDTH))
        self.encoder = nn.ModuleList(nn.ModuleList([Attention(), FeedForward()]) for _ in range(ENCODER))
        self.decoder = nn.ModuleList(nn.ModuleList([Recurrent(), Attention(), FeedForward()]) for _ in range(DECODER))
        self.output = Output(target_words)
        self.places = positions(128)
        self.rounds = False

    def table(self, name):
        table = self.target if name == "target" or self.shared else self.source
        return rounded(table, 127 / table.detach().abs().max()) if self.rounds else table

    def use_rounding(self):
        self.rounds = True
        for module in self.modules():
            if isinstance(module, Quantized):
                module.rounds = True

    def encode(self, source, mask):
        states = self.table("source")[source] * math.sqrt(WIDTH) + self.places[:source.shape[1]]
        states = dropped(states, self.training)
        for attention, feed_forward in self.encoder:
            states = feed_forward(attention(states, states, mask))
        return states

    def decode(self, words, memory, mask):
        """Scores of every next word. The first step embeds zeros."""
        table = self.table("target")
        embedded = functional.pad(table[words] * math.sqrt(WIDTH), (0, 0, 1, 0))
        states = dropped(embedded + self.places[:embedded.shape[1]], self.training)
        for recurrent, attention, feed_forward in self.decoder:
            states = feed_forward(attention(recurrent(states), memory, mask))
        return self.output(states, table)

    def translate(self, source):
        mask = torch.zeros(1, 1, 1, len(source))
        memory = self.encode(torch.tensor([source]), mask)
        words = []
        while len(words) < 2 * len(source):
            scores = self.decode(torch.tensor([words], dtype=torch.long), memory, mask)[0, -1]
            scores[1] = -math.inf
            word = int(scores.argmax())
            if word == END:
                break
            words.append(word)
        return words


class Vocabulary:
    def __init__(self, path):
        self.path = path
        listing = subprocess.run(["spm_export_vocab", f"--model={path}"], check=True, capture_output=True, text=True)
        self.size = len(listing.stdout.splitlines())
        self.words = -(-self.size // 8) * 8  # rows of the model, in groups of eight

    @classmethod
    def train(cls, path, texts, size, rule):
        scratch = path.with_suffix(".txt")
        scratch.write_text("\n".join(texts) + "\n", encoding="utf-8")
        subprocess.run(["spm_train", f"--input={scratch}", f"--model_prefix={path.with_suffix('')}", "--model_type=unigram",
                        f"--vocab_size={size}", "--hard_vocab_limit=false", "--character_coverage=1.0", "--byte_fallback",
                        "--bos_id=-1", "--eos_id=0", "--unk_id=1", "--pad_id=-1", "--num_threads=1",
                        f"--normalization_rule_name={rule}", "--minloglevel=1"], check=True)
        path.with_suffix(".model").rename(path)
        path.with_suffix(".vocab").unlink()
        scratch.unlink()
        return cls(path)

    def encode(self, texts, samples=False):
        how = ["--output_format=sample_id", "--alpha=0.3", "--nbest_size=-1"] if samples else ["--output_format=id"]
        out = subprocess.run(["spm_encode", f"--model={self.path}", *how], input="\n".join(texts) + "\n", check=True,
                             capture_output=True, text=True).stdout
        return [[int(word) for word in line.split()] for line in out.splitlines()]

    def decode(self, words):
        line = " ".join(map(str, words)) + "\n"
        return subprocess.run(["spm_decode", f"--model={self.path}", "--input_format=id"], input=line, check=True,
                              capture_output=True, text=True).stdout.rstrip("\n")


def batches(pairs, size, chooser):
    """Endless batches of pairs of similar length."""
    while True:
        chooser.shuffle(pairs)
        for start in range(0, len(pairs), size * 16):
            stretch = sorted(pairs[start:start + size * 16], key=lambda pair: len(pair[0]) + 2 * len(pair[1]))
            groups = [stretch[at:at + size] for at in range(0, len(stretch), size)]
            chooser.shuffle(groups)
            yield from groups


def padded(lines, value):
    longest = max(map(len, lines))
    return torch.tensor([line + [value] * (longest - len(line)) for line in lines])


def train(model, pairs, steps, report):
    optimizer = torch.optim.Adam(model.parameters(), lr=1e-3, betas=(0.9, 0.98), eps=1e-9)
    chooser = random.Random(11)
    stream = batches(pairs, 64, chooser)
    started, total = time.time(), 0.0
    model.train()
    for step in range(1, steps + 1):
        rate = 2.5e-3 * min(step / 300, 0.5 * (1 + math.cos(math.pi * step / steps)) + 0.01)
        for group in optimizer.param_groups:
            group["lr"] = rate
        if step == steps * 3 // 4:
            model.use_rounding()
        batch = next(stream)
        source = padded([pair[0] for pair in batch], -1)
        target = padded([pair[1] for pair in batch], -1)
        mask = torch.zeros(source.shape).masked_fill(source < 0, -1e9)[:, None, None, :]
        memory = model.encode(source.clamp(min=0), mask)
        scores = model.decode(target.clamp(min=0)[:, :-1], memory, mask)
        loss = functional.cross_entropy(scores.flatten(0, 1), target.flatten(), ignore_index=-1, label_smoothing=0.05)
        optimizer.zero_grad()
        loss.backward()
        nn.utils.clip_grad_norm_(model.parameters(), 1.0)
        optimizer.step()
        total += float(loss)
        if step % 100 == 0:
            print(f"step {step} loss {total / 100:.3f} {time.time() - started:.0f} s", flush=True)
            total = 0.0
            if step % 1000 == 0:
                model.eval()
                report()
                model.train()


def tensors_of(model):
    """Every tensor of the model file: name, type, shape, bytes."""
    quantized, real = 0x4101, 0x404
    tensors = []

    def add(name, kind, shape, data):
        tensors.append((name, kind, shape, data + b"\0" * (-len(data) % 256)))

    def add_real(name, values):
        values = values.detach().numpy().astype("<f4").reshape(1, -1)
        add(name, real, values.shape, values.tobytes())

    def add_quantized(name, weight, transposed):
        values = weight.detach().numpy()
        multiplier = numpy.float32(127 / numpy.abs(values).max())
        kept = numpy.clip(numpy.rint(values * multiplier), -127, 127).astype("i1")
        kept = numpy.ascontiguousarray(kept.T if transposed else kept)
        add(name, quantized, values.shape, kept.tobytes() + struct.pack("<f", multiplier))

    def add_layer(prefix, suffix, layer):
        add_quantized(f"{prefix}_W{suffix}", layer.weight, True)
        add_real(f"{prefix}_W{suffix}_QuantMultA", 127 / layer.greatest)
        if layer.bias is not None:
            add_real(f"{prefix}_b{suffix}", layer.bias)

    def add_norm(prefix, norm):
        add_real(f"{prefix}_ln_scale", norm.weight)
        add_real(f"{prefix}_ln_bias", norm.bias)

    def add_attention(prefix, layer):
        for suffix in "qkvo":
            add_layer(prefix, suffix, getattr(layer, suffix))
        add_norm(f"{prefix}_Wo", layer.norm)

    def add_feed_forward(prefix, layer):
        add_layer(prefix, "1", layer.inner)
        add_layer(prefix, "2", layer.outer)
        add_norm(f"{prefix}_ffn", layer.norm)

    for index, (attention, feed_forward) in enumerate(model.encoder, 1):
        add_attention(f"encoder_l{index}_self", attention)
        add_feed_forward(f"encoder_l{index}_ffn", feed_forward)
    for index, (recurrent, attention, feed_forward) in enumerate(model.decoder, 1):
        add_layer(f"decoder_l{index}_rnn", "", recurrent.input)
        add_layer(f"decoder_l{index}_rnn", "f", recurrent.forget)
        add_norm(f"decoder_l{index}_rnn_ffn", recurrent.norm)
        add_attention(f"decoder_l{index}_context", attention)
        add_feed_forward(f"decoder_l{index}_ffn", feed_forward)
    name = "Wemb" if model.shared else "decoder_Wemb"
    add_quantized(name, model.target, False)
    if not model.shared:
        add_quantized("encoder_Wemb", model.source, False)
    for owner in (name, "none"):
        add_real(f"{owner}_QuantMultA", 127 / model.output.greatest)
    add_real("decoder_ff_logit_out_b", model.output.bias)
    return tensors


def description_of(model):
    lines = {"type": "transformer", "dim-emb": WIDTH, "enc-depth": ENCODER, "dec-depth": DECODER, "transformer-heads": HEADS,
             "transformer-dim-ffn": INNER, "transformer-ffn-activation": "relu", "transformer-ffn-depth": 2,
             "transformer-decoder-autoreg": "rnn", "dec-cell": "ssru", "transformer-preprocess": '""',
             "transformer-postprocess": "dan", "transformer-postprocess-emb": "d", "transformer-postprocess-top": '""',
             "tied-embeddings": str(not model.shared).lower(), "tied-embeddings-all": str(model.shared).lower(),
             "tied-embeddings-src": "false"}
    return "".join(f"{key}: {value}\n" for key, value in lines.items()).encode() + b"\0"


def write(model, path):
    description = description_of(model)
    tensors = sorted(tensors_of(model) + [("special:model.yml", 0x101, (len(description),), description)])
    head = struct.pack("<QQ", 1, len(tensors))
    head += b"".join(struct.pack("<QQQQ", len(name) + 1, kind, len(shape), len(data)) for name, kind, shape, data in tensors)
    head += b"".join(name.encode() + b"\0" for name, *_ in tensors)
    head += b"".join(struct.pack(f"<{len(shape)}i", *shape) for _, _, shape, _ in tensors)
    padding = ((len(head) + 8) // 256 + 1) * 256 - len(head) - 8
    path.write_bytes(head + struct.pack("<Q", padding) + b"\0" * padding + b"".join(data for *_, data in tensors))


def vocabularies(source, target, pairs, folder):
    sources = sorted({pair[0] for pair in pairs})
    targets = sorted({pair[1] for pair in pairs})
    if target == "zh":
        # Full-width punctuation stays as it is in what is written.
        return (Vocabulary.train(folder / f"srcvocab.{source}{target}.spm", sources, 900, "nmt_nfkc"),
                Vocabulary.train(folder / f"trgvocab.{source}{target}.spm", targets, 1100, "identity"))
    shared = Vocabulary.train(folder / f"vocab.{source}{target}.spm", sources + targets, 1300, "nmt_nfkc")
    return shared, shared


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source")
    parser.add_argument("target")
    parser.add_argument("--steps", type=int, default=5000)
    parser.add_argument("--pairs", type=int, default=60000)
    parser.add_argument("--out", type=pathlib.Path, default=FOLDER)
    options = parser.parse_args()
    source, target = options.source, options.target
    torch.manual_seed(7)

    phrases, slots = phrase_book.read_phrases(), phrase_book.read_slots()
    pairs = phrase_book.sampled(phrases, slots, source, target, options.pairs, 5)
    options.out.mkdir(parents=True, exist_ok=True)
    source_vocabulary, target_vocabulary = vocabularies(source, target, pairs, options.out)
    half = len(pairs) // 2
    sources = source_vocabulary.encode([pair[0] for pair in pairs[:half]])
    sources += source_vocabulary.encode([pair[0] for pair in pairs[half:]], samples=True)
    targets = target_vocabulary.encode([pair[1] for pair in pairs])
    encoded = [(words + [END], wanted + [END]) for words, wanted in zip(sources, targets, strict=True)]

    model = Student(source_vocabulary.words, target_vocabulary.words, source_vocabulary is target_vocabulary)
    column, wanted = phrase_book.LANGUAGES.index(source), phrase_book.LANGUAGES.index(target)
    paraphrases = [(row[column], row[wanted]) for row in phrase_book.rows("held-out.tsv") if row[column]]

    def report():
        with torch.no_grad():
            for text, expected in paraphrases[:6]:
                words = model.translate(source_vocabulary.encode([text])[0] + [END])
                print("   ", text, "->", target_vocabulary.decode(words), "|", expected, flush=True)

    train(model, encoded, options.steps, report)
    write(model.eval(), options.out / f"model.{source}{target}.bin")


if __name__ == "__main__":
    main()
