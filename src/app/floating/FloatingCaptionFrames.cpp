#include "app/floating/FloatingCaptionFrames.h"

#include "base/RectangleText.h"
#include "platform/DefaultsStore.h"
#include "storage/SettingKeys.h"

namespace lumaphone {

namespace {

QString frameKeyOn(const QString &output)
{
    return settingkeys::captionFrame + QLatin1Char('.') + output;
}

} // namespace

FloatingCaptionFrames::FloatingCaptionFrames(DefaultsStore &defaults)
    : m_defaults(defaults)
{
}

std::optional<QRectF> FloatingCaptionFrames::frame() const
{
    return stored(settingkeys::captionFrame);
}

void FloatingCaptionFrames::setFrame(const QRectF &frame)
{
    m_defaults.setObject(settingkeys::captionFrame, rectangleText(frame));
}

std::optional<QRectF> FloatingCaptionFrames::frameOn(const QString &output) const
{
    return stored(frameKeyOn(output));
}

void FloatingCaptionFrames::setFrameOn(const QString &output, const QRectF &frame)
{
    m_defaults.setObject(frameKeyOn(output), rectangleText(frame));
    m_defaults.setObject(settingkeys::captionOutput, output);
}

std::optional<QString> FloatingCaptionFrames::lastOutput() const
{
    return m_defaults.string(settingkeys::captionOutput);
}

std::optional<QRectF> FloatingCaptionFrames::stored(const QString &key) const
{
    const std::optional<QString> text = m_defaults.string(key);
    const QRectF frame = text ? rectangleFromText(*text) : QRectF();
    return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

} // namespace lumaphone
