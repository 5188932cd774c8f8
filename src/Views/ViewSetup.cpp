#include "Views/ViewSetup.h"

#include "Views/Shared/SymbolProvider.h"
#include "Views/Shared/ThemeTones.h"

#include <QDirIterator>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>
#include <QQuickWindow>

#include <optional>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

void addFonts()
{
    QDirIterator fonts(u":/navorin/fonts"_s, {u"*.ttf"_s});
    while (fonts.hasNext())
        QFontDatabase::addApplicationFont(fonts.next());
    QFont font(u"Vazirmatn"_s);
    // Coloured fringes would show on tinted light.
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    QGuiApplication::setFont(font);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
}

std::optional<ViewSurroundings> &givenSurroundings()
{
    static std::optional<ViewSurroundings> given;
    return given;
}

} // namespace

const ViewSurroundings &viewSurroundings()
{
    if (!givenSurroundings())
        qFatal("a screen was made before prepareViews()");
    return *givenSurroundings();
}

void prepareViews(QQmlEngine &engine, const ViewSurroundings &surroundings)
{
    givenSurroundings().emplace(surroundings);
    addFonts();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    // The frame that Qt draws around a window on Wayland is to be as dark as the window.
    QGuiApplication::setPalette(QPalette(backgroundColor(), backgroundColor()));
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(u"symbol"_s, new SymbolProvider);
}

} // namespace navorin
