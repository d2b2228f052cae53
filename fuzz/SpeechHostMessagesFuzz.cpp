// What program and speech host say to each other, as each of them reads it: a stream that is cut into frames,
// and the messages in them. The first byte tells in what pieces the stream arrives.

#include "Require.h"
#include "speech/protocol/FrameReader.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace lumaphone;

namespace {

/// What can be read can be written, and is the same then: a message has one form.
template<typename Decode> void checkMessage(const Bytes &content, Decode decode)
{
    try {
        const auto message = decode(content);
        fuzz::require(host::encode(message) == content, "a message has one form");
    } catch (const WireError &error) {
        fuzz::require(*error.what() != '\0', "an error says something");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::size_t piece = data[0] + std::size_t {1};
    const std::span stream(data + 1, size - 1);
    std::size_t taken = 0;
    FrameReader reader;
    try {
        for (std::size_t begin = 0; begin < stream.size(); begin += piece) {
            reader.append(stream.subspan(begin, std::min(piece, stream.size() - begin)));
            while (const auto content = reader.next()) {
                fuzz::require(!content->empty() && content->size() <= FrameReader::maximumContent,
                    "a content has a length that is allowed");
                const Bytes frame = framed(*content);
                fuzz::require(
                    std::equal(frame.begin(), frame.end(), stream.begin() + taken), "nothing is skipped");
                taken += frame.size();
                checkMessage(*content, &host::decodeRequest);
                checkMessage(*content, &host::decodeReport);
            }
        }
    } catch (const WireError &error) {
        fuzz::require(*error.what() != '\0', "an error says something");
    }
    // Without the frame, which a fuzzer has to guess otherwise.
    const Bytes content(stream.begin(), stream.end());
    checkMessage(content, &host::decodeRequest);
    checkMessage(content, &host::decodeReport);
    return 0;
}
