#include "Views/Shell/ContentView.h"

#include "Services/Playback/RadioPlayer.h"

namespace navorin {

ContentView::ContentView(QObject *parent)
    : ContentView(RadioPlayer::shared(), parent)
{
}

ContentView::ContentView(RadioPlayer &player, QObject *parent)
    : QObject(parent)
    , m_player(player)
{
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &ContentView::stationChanged);
    connect(&m_player, &RadioPlayer::isFullPlayerPresentedChanged, this, &ContentView::fullPlayerChanged);
    connect(&m_player, &RadioPlayer::themeColorChanged, this, &ContentView::themeColorChanged);
}

bool ContentView::hasStation() const
{
    return m_player.hasStation();
}

bool ContentView::isFullPlayerPresented() const
{
    return m_player.isFullPlayerPresented();
}

QColor ContentView::themeColor() const
{
    return m_player.themeColor();
}

void ContentView::togglePlayPause()
{
    if (m_player.hasStation())
        m_player.togglePlayPause();
}

} // namespace navorin
