#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class RadioPlayer;

/// What the window itself shows of the player: whether something is selected, and its light.
class ContentView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ContentViewState)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY stationChanged)
    Q_PROPERTY(bool isFullPlayerPresented READ isFullPlayerPresented NOTIFY fullPlayerChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
public:
    explicit ContentView(QObject *parent = nullptr);
    explicit ContentView(RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] bool isFullPlayerPresented() const;
    [[nodiscard]] QColor themeColor() const;

    Q_INVOKABLE void togglePlayPause();

Q_SIGNALS:
    void stationChanged();
    void fullPlayerChanged();
    void themeColorChanged();

private:
    RadioPlayer &m_player;
};

} // namespace navorin
