#pragma once

#include <QColor>
#include <QQuickImageProvider>
#include <QUrl>

namespace navorin {

/// "image://symbol/<system symbol name>?<#rrggbb or #aarrggbb>": a symbol in one colour, drawn at the very
/// pixels asked for, so it is sharp on any screen.
class SymbolProvider final : public QQuickImageProvider
{
public:
    SymbolProvider();
    /// Where an image item finds the symbol; no address for no symbol.
    [[nodiscard]] static QUrl addressOf(const QString &symbol, const QColor &color);
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace navorin
