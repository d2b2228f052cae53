#include "capture/AudioConverter.h"
#include "capture/SingleAudioBufferInputProvider.h"
#include "support/TestSound.h"

#include <benchmark/benchmark.h>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// Converts 20 ms of a tone again and again, as a capture delivers it.
void convert(benchmark::State &state, const AudioStreamDescription &description)
{
    const auto frames = static_cast<std::size_t>(description.sampleRateHz / 50);
    TestSound sound(description, tone(440, 0.5, description.sampleRateHz, 0, frames));
    const auto converter = AudioConverter::create(description);
    PcmBuffer output(converter->outputCapacity(frames));
    for (auto _ : state) {
        SingleAudioBufferInputProvider provider(sound.buffer());
        converter->convert(
            output, [&provider](AudioConverterInputStatus &status) { return provider.provideInput(status); });
        benchmark::DoNotOptimize(output.samples().data());
    }
    state.counters["x_real_time"]
        = benchmark::Counter(static_cast<double>(state.iterations()) * 0.02, benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK_CAPTURE(
    convert, from48kHzStereoFloat, AudioStreamDescription {48000, 2, SampleType::float32, true});
BENCHMARK_CAPTURE(
    convert, from48kHzStereoFloatPlanar, AudioStreamDescription {48000, 2, SampleType::float32, false});
BENCHMARK_CAPTURE(convert, from44kHzStereoInt16, AudioStreamDescription {44100, 2, SampleType::int16, true});
BENCHMARK_CAPTURE(
    convert, from192kHzEightChannelsInt32, AudioStreamDescription {192000, 8, SampleType::int32, true});
BENCHMARK_CAPTURE(convert, from16kHzMonoInt16, analysisDescription);

BENCHMARK_MAIN();
