#pragma once

#include <QRectF>
#include <QString>

#include <optional>

namespace lumaphone {

class DefaultsStore;

/// Where the panel was last, among the user's choices. Main thread.
class FloatingCaptionFrames
{
public:
    /// The store must outlive this.
    explicit FloatingCaptionFrames(DefaultsStore &defaults);

    /// On the whole desktop; none if nothing is stored, or nothing that is a rectangle.
    std::optional<QRectF> frame() const;
    void setFrame(const QRectF &frame);

    /// On the output of this name alone, counted from that output's lower left corner.
    std::optional<QRectF> frameOn(const QString &output) const;
    /// Also makes it the output that it was on last.
    void setFrameOn(const QString &output, const QRectF &frame);
    /// None where panels are not bound to outputs, or there was none yet.
    std::optional<QString> lastOutput() const;

private:
    std::optional<QRectF> stored(const QString &key) const;

    DefaultsStore &m_defaults;
};

} // namespace lumaphone
