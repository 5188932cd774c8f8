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

/// "image://shadow/<corner radius>/<blur>": the black shadow of a rounded box as a nine-slice bitmap, opaque
/// in its middle, with borders of shadowBorder(). One bitmap serves every box of that elevation. A box lower
/// than two such borders adds "/<box height>" and gets three slices that stretch sideways only.
class ShadowProvider final : public QQuickImageProvider
{
public:
    ShadowProvider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

/// How far the shadow reaches beyond its box.
[[nodiscard]] int shadowReach(int blur);
/// Width of the nine-slice borders, from the outer edge of the shadow.
[[nodiscard]] int shadowBorder(int radius, int blur);
[[nodiscard]] QImage shadowImage(int radius, int blur, int boxHeight = 0);

} // namespace navorin
