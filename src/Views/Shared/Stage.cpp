#include "Views/Shared/Stage.h"

#include "Platform/Desktop/DesktopSettings.h"
#include "Views/ViewSetup.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <algorithm>

namespace navorin {

namespace {

bool movesFocus(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

} // namespace

Stage::Stage(QObject *parent)
    : QObject(parent)
    , m_settings(viewSurroundings().settings)
{
    qGuiApp->installEventFilter(this);
    if (!m_settings)
        return;
    connect(m_settings, &DesktopSettings::textScaleChanged, this, &Stage::textScaleChanged);
    connect(m_settings, &DesktopSettings::reducedMotionChanged, this, &Stage::reducedMotionChanged);
}

double Stage::textScale() const
{
    constexpr double largest = 1.5;
    return m_settings ? std::min(m_settings->textScale(), largest) : 1;
}

bool Stage::reducedMotion() const
{
    return m_settings && m_settings->reducedMotion();
}

bool Stage::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Expose:
        updateSeen();
        break;
    case QEvent::KeyPress:
        if (movesFocus(static_cast<QKeyEvent *>(event)->key()))
            setKeyboardSteers(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        setKeyboardSteers(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void Stage::updateSeen()
{
    const auto windows = QGuiApplication::topLevelWindows();
    const bool seen = std::any_of(windows.cbegin(), windows.cend(),
                                  [](const QWindow *window) { return window->isExposed(); });
    if (seen == m_isSeen)
        return;
    m_isSeen = seen;
    Q_EMIT isSeenChanged();
}

void Stage::setKeyboardSteers(bool steers)
{
    if (steers == m_keyboardSteers)
        return;
    m_keyboardSteers = steers;
    Q_EMIT keyboardSteersChanged();
}

} // namespace navorin
