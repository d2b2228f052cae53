#pragma once

#include <QQuickImageProvider>

namespace lumaphone {

/// The program's symbols in any size and colour: "image://symbol/mic.fill/4a5fe8" is the symbol "mic.fill" in
/// #4a5fe8, or #aarrggbb with eight digits. Drawn at the requested size, so it is sharp on every screen.
class SymbolImageProvider final : public QQuickImageProvider
{
public:
    SymbolImageProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    /// The drawing of a symbol; empty for a name that has none.
    static QByteArray drawing(const QString &name);
};

} // namespace lumaphone
