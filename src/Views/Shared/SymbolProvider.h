#pragma once

#include <QQuickImageProvider>

namespace navorin {

/// "image://symbol/<system symbol name>?<#rrggbb>": a symbol in one colour, drawn at the very pixels asked
/// for, so it is sharp on any screen.
class SymbolProvider final : public QQuickImageProvider
{
public:
    SymbolProvider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace navorin
