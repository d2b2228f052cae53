"""Filter-bank features exactly as the runtime computes them, for both kinds of network."""
import numpy as np

FRAME, SHIFT, FFT, BANDS, RATE = 400, 160, 512, 80, 16000


def _filter_banks(low, high):
    high = high if high > 0 else RATE / 2 + high

    def mel(frequency):
        return 1127 * np.log(1 + np.asarray(frequency) / 700)

    bottom, top = mel(low), mel(high)
    step = (top - bottom) / (BANDS + 1)
    points = mel(np.arange(FFT // 2) * RATE / FFT)
    weights = np.zeros((BANDS, FFT // 2 + 1), np.float32)
    for band in range(BANDS):
        left, centre, right = (bottom + (band + k) * step for k in range(3))
        up = (points - left) / (centre - left)
        down = (right - points) / (right - centre)
        inside = (points > left) & (points < right)
        weights[band, :FFT // 2] = np.where(inside, np.where(points <= centre, up, down), 0)
    return weights


_PHASE = 2 * np.pi * np.arange(FRAME) / (FRAME - 1)
_POVEY = ((0.5 - 0.5 * np.cos(_PHASE)) ** 0.85).astype(np.float32)
_HAMMING = (0.54 - 0.46 * np.cos(_PHASE)).astype(np.float32)
_STREAMING_BANKS = _filter_banks(20, -400)
_WHOLE_BANKS = _filter_banks(20, 0)


def _filter_bank_features(samples, drops_edges, window, banks):
    count = len(samples)
    if drops_edges:
        frames = 1 + (count - FRAME) // SHIFT if count >= FRAME else 0
        index = np.arange(frames)[:, None] * SHIFT + np.arange(FRAME)[None]
    else:
        frames = (count + SHIFT // 2) // SHIFT
        index = np.arange(frames)[:, None] * SHIFT + SHIFT // 2 - FRAME // 2 + np.arange(FRAME)[None]
        index = np.where(index < 0, -index - 1, index)
        index = np.clip(np.where(index >= count, 2 * count - 1 - index, index), 0, count - 1)
    framed = samples[index].astype(np.float32)
    framed -= framed.mean(1, keepdims=True)
    emphasised = framed.copy()
    emphasised[:, 1:] -= 0.97 * framed[:, :-1]
    emphasised[:, 0] -= 0.97 * framed[:, 0]
    power = np.abs(np.fft.rfft(emphasised * window, FFT)) ** 2
    return np.log(np.maximum(power.astype(np.float32) @ banks.T, 1.1920929e-07))


def streaming_features(samples):
    """(frames, 80), for the network that hears sound as it comes."""
    return _filter_bank_features(samples, False, _POVEY, _STREAMING_BANKS)


def whole_features(samples, stacked=7, step=6):
    """(frames, 560), seven frames stacked and every sixth kept, for the network that hears whole segments."""
    frames = _filter_bank_features(samples * 32768, True, _HAMMING, _WHOLE_BANKS)
    if len(frames) == 0:
        return np.zeros((0, stacked * BANDS), np.float32)
    count = -(-len(frames) // step)
    index = np.arange(count)[:, None] * step - (stacked - 1) // 2 + np.arange(stacked)[None]
    return frames[np.clip(index, 0, len(frames) - 1)].reshape(count, -1)
