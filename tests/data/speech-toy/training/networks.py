"""The two networks and how they learn."""
import random
import time

import numpy as np
import torch
from torch import nn

LANGUAGES = {"zh": 0, "en": 1, "yue": 2, "ja": 3, "ko": 4, "nospeech": 5}


class Streaming(nn.Module):
    """Hears sound as it comes: two convolutions that keep every fourth frame, then a recurrent part."""
    width, silence = 80, -15.9

    def __init__(self, tokens, hidden=128, channels=96):
        super().__init__()
        self.first = nn.Conv1d(80, channels, 5, 2)
        self.second = nn.Conv1d(channels, channels, 5, 2)
        self.memory = nn.GRU(channels, hidden, 2, batch_first=True, dropout=0.1)
        self.output = nn.Linear(hidden, tokens)

    def forward(self, frames, state=None):
        heard = ((frames + 8) / 4).transpose(1, 2)
        heard = torch.relu(self.second(torch.relu(self.first(heard)))).transpose(1, 2)
        heard, state = self.memory(heard, state)
        return self.output(heard).log_softmax(-1), state

    def augment(self, frames):
        count = len(frames)
        colour = torch.randn(count, 1, 80).cumsum(-1).mul(0.08) + torch.randn(count, 1, 1) * 0.5
        return frames + colour + torch.randn_like(frames) * 0.15

    def loss(self, frames, lengths, targets, target_lengths, _languages):
        scores, _ = self(frames)
        kept = torch.tensor([((length - 5) // 2 + 1 - 5) // 2 + 1 for length in lengths]).clamp(1, scores.shape[1])
        return nn.functional.ctc_loss(scores.transpose(0, 1), targets, kept, target_lengths, zero_infinity=True)


class Whole(nn.Module):
    """Hears whole segments in both directions; one head names the language, one the event."""
    width, silence = 560, 0

    def __init__(self, tokens, width=128, hidden=80):
        super().__init__()
        self.input = nn.Linear(560, width)
        self.memory = nn.GRU(width, hidden, 2, batch_first=True, bidirectional=True, dropout=0.1)
        self.output = nn.Linear(2 * hidden, tokens)
        self.language = nn.Linear(2 * hidden, len(LANGUAGES))
        self.event = nn.Linear(2 * hidden, 2)
        self.attention = nn.Linear(2 * hidden, 1)

    def forward(self, frames):
        heard, _ = self.memory(torch.relu(self.input(frames)))
        summary = (torch.softmax(self.attention(heard), 1) * heard).sum(1)
        return self.output(heard), self.language(summary), self.event(summary)

    def augment(self, frames):
        count = len(frames)
        colour = torch.randn(count, 1, 560) * 0.05 + torch.randn(count, 1, 1) * 0.1
        return frames + colour + torch.randn_like(frames) * 0.15

    def loss(self, frames, lengths, targets, target_lengths, languages):
        scores, language, event = self(frames)
        texts = nn.functional.ctc_loss(scores.log_softmax(-1).transpose(0, 1), targets, torch.tensor(lengths),
                                       target_lengths, zero_infinity=True)
        names = nn.functional.cross_entropy(language, torch.tensor([LANGUAGES[name] for name in languages]))
        events = nn.functional.cross_entropy(event, torch.tensor([int(name == "nospeech") for name in languages]))
        return texts + 0.5 * names + 0.2 * events


def train(network, examples, seconds, rate=2e-3, batch=32):
    """Trains for so many seconds on all processors, whatever else they do; the rate falls along a cosine."""
    torch.manual_seed(1)
    optimizer = torch.optim.AdamW(network.parameters(), rate, weight_decay=1e-4)
    order = sorted(range(len(examples)), key=lambda index: len(examples[index][0]))
    batches = [order[start:start + batch] for start in range(0, len(order), batch)]
    started, steps = time.process_time(), 0

    def share():
        return (time.process_time() - started) / torch.get_num_threads() / seconds

    while share() < 1:
        random.shuffle(batches)
        total = 0
        for chosen in batches:
            progress = share()
            if progress >= 1:
                break
            warm = min(1, steps / 200 + 0.05)
            for group in optimizer.param_groups:
                group["lr"] = rate * warm * (0.5 + 0.5 * np.cos(np.pi * progress)) + 1e-5
            lengths = [len(examples[index][0]) for index in chosen]
            frames = np.full((len(chosen), max(lengths), network.width), network.silence, np.float32)
            for row, index in enumerate(chosen):
                frames[row, :lengths[row]] = examples[index][0]
            targets = torch.tensor(sum((examples[index][1] for index in chosen), []), dtype=torch.long)
            target_lengths = torch.tensor([len(examples[index][1]) for index in chosen])
            loss = network.loss(network.augment(torch.from_numpy(frames)), lengths, targets, target_lengths,
                                [examples[index][2] for index in chosen])
            optimizer.zero_grad()
            loss.backward()
            nn.utils.clip_grad_norm_(network.parameters(), 2.0)
            optimizer.step()
            total, steps = total + loss.item(), steps + 1
        print(f"{type(network).__name__}: step {steps}, loss {total / len(batches):.4f}", flush=True)
    return network.eval()
