#include "speech/protocol/SpeechHostMessages.h"

namespace lumaphone::host {

namespace {

enum class Kind : std::uint8_t {
    configure = 1,
    sound,
    endOfSound,
    loading = 64,
    ready,
    decoded,
    settled,
    closed,
    finished,
    failure,
};

constexpr std::uint32_t maximumFiles = 8;

class Encoder
{
public:
    Bytes bytes;

    void operator()(const Configure &message)
    {
        start(Kind::configure);
        m_out.u32(message.version);
        m_out.text(message.runtimeFolder);
        m_out.text(message.voiceDetector);
        m_out.u32(message.voiceThreshold);
        network(message.network);
        m_out.u8(message.volatileNetwork ? 1 : 0);
        if (message.volatileNetwork) {
            network(*message.volatileNetwork);
        }
        m_out.text(message.language);
        m_out.u32(message.threads);
    }
    void operator()(const Sound &message)
    {
        start(Kind::sound);
        m_out.i64(message.position);
        m_out.samples(message.samples);
    }
    void operator()(const EndOfSound &) { start(Kind::endOfSound); }
    void operator()(const Loading &message)
    {
        start(Kind::loading);
        m_out.u8(static_cast<std::uint8_t>(message.stage));
    }
    void operator()(const Ready &message)
    {
        start(Kind::ready);
        m_out.text(message.runtimeVersion);
    }
    void operator()(const Decoded &message)
    {
        start(Kind::decoded);
        m_out.i64(message.start);
        m_out.i64(message.end);
        m_out.i64(message.voicedSamples);
        m_out.u8(message.isFinal ? 1 : 0);
        m_out.u8(message.continuesSpeech ? 1 : 0);
        m_out.u8(message.isCut ? 1 : 0);
        m_out.u32(message.milliseconds);
        m_out.text(message.language);
        m_out.text(message.event);
        m_out.text(message.text);
    }
    void operator()(const Settled &message)
    {
        start(Kind::settled);
        m_out.i64(message.position);
    }
    void operator()(const Closed &message)
    {
        start(Kind::closed);
        m_out.i64(message.start);
        m_out.i64(message.end);
    }
    void operator()(const Finished &) { start(Kind::finished); }
    void operator()(const Failure &message)
    {
        start(Kind::failure);
        m_out.u8(static_cast<std::uint8_t>(message.kind));
        m_out.text(message.detail);
    }

private:
    void start(Kind kind) { m_out.u8(static_cast<std::uint8_t>(kind)); }
    void network(const Network &network)
    {
        m_out.u8(static_cast<std::uint8_t>(network.kind));
        m_out.u32(static_cast<std::uint32_t>(network.files.size()));
        for (const std::string &file : network.files) {
            m_out.text(file);
        }
        m_out.text(network.tokens);
    }

    WireWriter m_out {bytes};
};

bool takeFlag(WireReader &in)
{
    const std::uint8_t value = in.u8();
    if (value > 1) {
        throw WireError("neither yes nor no");
    }
    return value == 1;
}

template<typename Enum> Enum takeEnum(WireReader &in, Enum last)
{
    const std::uint8_t value = in.u8();
    if (value > static_cast<std::uint8_t>(last)) {
        throw WireError("an unknown choice");
    }
    return static_cast<Enum>(value);
}

Network takeNetwork(WireReader &in)
{
    Network network;
    network.kind = takeEnum(in, NetworkKind::streamingTransducer);
    const std::uint32_t files = in.u32();
    if (files > maximumFiles) {
        throw WireError("too many files");
    }
    for (std::uint32_t i = 0; i < files; ++i) {
        network.files.push_back(in.text());
    }
    network.tokens = in.text();
    return network;
}

Configure takeConfigure(WireReader &in)
{
    Configure message;
    message.version = in.u32();
    message.runtimeFolder = in.text();
    message.voiceDetector = in.text();
    message.voiceThreshold = in.u32();
    message.network = takeNetwork(in);
    if (takeFlag(in)) {
        message.volatileNetwork = takeNetwork(in);
    }
    message.language = in.text();
    message.threads = in.u32();
    return message;
}

Sound takeSound(WireReader &in)
{
    Sound message;
    message.position = in.i64();
    message.samples = in.samples();
    return message;
}

Decoded takeDecoded(WireReader &in)
{
    Decoded message;
    message.start = in.i64();
    message.end = in.i64();
    message.voicedSamples = in.i64();
    message.isFinal = takeFlag(in);
    message.continuesSpeech = takeFlag(in);
    message.isCut = takeFlag(in);
    message.milliseconds = in.u32();
    message.language = in.text();
    message.event = in.text();
    message.text = in.text();
    return message;
}

Closed takeClosed(WireReader &in)
{
    Closed message;
    message.start = in.i64();
    message.end = in.i64();
    return message;
}

Failure takeFailure(WireReader &in)
{
    Failure message;
    message.kind = takeEnum(in, FailureKind::decoding);
    message.detail = in.text();
    return message;
}

Request takeRequest(WireReader &in)
{
    switch (static_cast<Kind>(in.u8())) {
    case Kind::configure:
        return takeConfigure(in);
    case Kind::sound:
        return takeSound(in);
    case Kind::endOfSound:
        return EndOfSound {};
    default:
        throw WireError("a request of unknown kind");
    }
}

Report takeReport(WireReader &in)
{
    switch (static_cast<Kind>(in.u8())) {
    case Kind::loading:
        return Loading {takeEnum(in, LoadStage::volatileNetwork)};
    case Kind::ready:
        return Ready {in.text()};
    case Kind::decoded:
        return takeDecoded(in);
    case Kind::settled:
        return Settled {in.i64()};
    case Kind::closed:
        return takeClosed(in);
    case Kind::finished:
        return Finished {};
    case Kind::failure:
        return takeFailure(in);
    default:
        throw WireError("a report of unknown kind");
    }
}

template<typename Message> Bytes encoded(const Message &message)
{
    Encoder encoder;
    std::visit(encoder, message);
    return std::move(encoder.bytes);
}

} // namespace

Bytes encode(const Request &request)
{
    return encoded(request);
}

Bytes encode(const Report &report)
{
    return encoded(report);
}

Request decodeRequest(const Bytes &content)
{
    WireReader in(content);
    Request request = takeRequest(in);
    in.end();
    return request;
}

Report decodeReport(const Bytes &content)
{
    WireReader in(content);
    Report report = takeReport(in);
    in.end();
    return report;
}

} // namespace lumaphone::host
