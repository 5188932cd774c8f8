#pragma once

#include "Platform/Desktop/DesktopSettings.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Equaliser/Equalizer.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Recognition/ShazamManager.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/FakeUserDefaults.h"
#include "Support/ManualMainQueue.h"
#include "Support/TestAccess.h"
#include "Views/ViewSetup.h"

#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace navorin {

/// A server that gives the body set for a path, else `status`, at once. Asked from several threads.
class InstantServer final : public HttpSession
{
public:
    explicit InstantServer(int status = 200)
        : m_status(status)
    {
    }
    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest request) override
    {
        if (request.method != "GET")
            changes << QString(QString::fromLatin1(request.method) + u' ' + request.url.path());
        return QtFuture::makeReadyFuture(
            HttpResponse{m_status, {}, answers.value(request.url.path(), QByteArrayLiteral("{}"))});
    }
    [[nodiscard]] QFuture<void> stream(HttpRequest, std::shared_ptr<HttpByteSink>, std::stop_token) override
    {
        return QtFuture::makeExceptionalFuture<void>(std::make_exception_ptr(
            TransportError(TransportError::Kind::CannotConnect, QStringLiteral("no network"))));
    }

    QHash<QString, QByteArray> answers;
    QStringList changes; ///< what was asked for but with GET

private:
    int m_status;
};

/// The application's window over a server, an engine, a desktop and a clock of the test's. There are no
/// pictures anywhere, and every word of complaint from QML fails the test.
class WindowRig
{
protected:
    WindowRig() { QQuickStyle::setStyle(QStringLiteral("Basic")); }

    void open(HttpSession &http)
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_player = std::make_unique<FakeMediaPlayer>();
        m_queue = std::make_unique<ManualMainQueue>();
        shareServices(http);
        m_engine = std::make_unique<QQmlApplicationEngine>();
        ViewSurroundings surroundings{*m_queue, m_desktop.urlOpener};
        surroundings.settings = &m_settings;
        prepareViews(*m_engine, surroundings);
        m_engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Navorin/Main.qml")));
        m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0));
        QVERIFY(m_window);
        QVERIFY(QTest::qWaitForWindowActive(m_window));
    }
    /// Call when nobody waits for an answer any more.
    void close()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        m_player->item.reset();
        TestAccess::forget<Equalizer, ShazamManager, RadioPlayer, AuthStore, Keychain, StationStore,
                           OfflineStore, ArtworkLoader, APIClient>();
    }

    /// All visible items below `root`, the window itself unless told, for which `isWanted` holds.
    template <typename Wanted>
    [[nodiscard]] QList<QQuickItem *> all(Wanted isWanted, QQuickItem *root = nullptr) const
    {
        QList<QQuickItem *> found;
        for (auto *child : (root ? root : m_window->contentItem())->childItems()) {
            if (!child->isVisible())
                continue;
            if (isWanted(child))
                found.append(child);
            found.append(all(isWanted, child));
        }
        return found;
    }
    /// Those made from the QML file `type`.
    [[nodiscard]] QList<QQuickItem *> items(const QByteArray &type) const
    {
        return all([start = QByteArray(type + "_QMLTYPE")](const QQuickItem *item) {
            return QByteArrayView(item->metaObject()->className()).startsWith(start);
        });
    }
    /// The first of them, or of all, that says or is called `text` and is not transparent; null without one.
    [[nodiscard]] QQuickItem *named(const QByteArray &type, const QString &text) const
    {
        for (auto *item : items(type)) {
            if (textOf(item) == text)
                return item;
        }
        return nullptr;
    }
    [[nodiscard]] QQuickItem *labelled(const QString &text, QQuickItem *root = nullptr) const
    {
        const auto isWanted = [&text](const QQuickItem *item) {
            if (textOf(item) != text)
                return false;
            while (item && item->opacity() > 0)
                item = item->parentItem();
            return item == nullptr;
        };
        return all(isWanted, root).value(0);
    }
    [[nodiscard]] QQuickItem *button(const QString &text) const
    {
        const auto isWanted = [&text](const QQuickItem *item) {
            return item->inherits("QQuickAbstractButton") && textOf(item) == text;
        };
        return all(isWanted).value(0);
    }

    [[nodiscard]] static QString textOf(const QQuickItem *item)
    {
        return item ? item->property("text").toString() : QString();
    }
    [[nodiscard]] QString focused() const { return textOf(m_window->activeFocusItem()); }
    [[nodiscard]] static QPoint middleOf(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    /// Whether neither the window nor what scrolls cuts the middle of `item` away.
    [[nodiscard]] bool isInSight(const QQuickItem *item) const
    {
        const QPointF middle = middleOf(item);
        for (auto *around = item->parentItem(); around; around = around->parentItem()) {
            if (around->clip() && !around->contains(around->mapFromScene(middle)))
                return false;
        }
        return m_window->contentItem()->contains(middle);
    }
    /// Clicks once `item` is in sight and stands still: what was made a moment ago is not laid out yet, and
    /// a sheet slides, so slowly at first that it seems to rest.
    void click(QQuickItem *item) const
    {
        QVERIFY(item);
        const QPointer<QQuickItem> kept(item);
        QPoint last(-1, -1);
        const auto standsStill = [&] {
            if (!kept)
                return true;
            showNextFrame();
            return kept && middleOf(kept) == std::exchange(last, middleOf(kept)) && isInSight(kept);
        };
        QVERIFY(QTest::qWaitFor(standsStill, 20'000));
        QVERIFY2(kept, "went away before it was clicked");
        QTest::mouseClick(m_window, Qt::LeftButton, {}, last);
    }
    void showNextFrame() const
    {
        QSignalSpy frame(m_window, &QQuickWindow::frameSwapped);
        m_window->update();
        QVERIFY(frame.wait());
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(m_window, key, modifiers);
    }

    std::unique_ptr<FakeMediaPlayer> m_player;
    std::unique_ptr<ManualMainQueue> m_queue;
    QtFileStore m_files;
    FakeUserDefaults m_defaults;
    FakeDesktop m_desktop;
    FakeSecureItemStore m_secrets;
    DesktopSettings m_settings;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;

private:
    void shareServices(HttpSession &http)
    {
        TestAccess::share<APIClient>(m_address, http);
        TestAccess::share<ArtworkLoader>(m_pictures);
        TestAccess::shareIn<OfflineStore>(m_files, *m_queue, http, APIClient::shared());
        TestAccess::share<StationStore>(APIClient::shared());
        TestAccess::share<Keychain>(m_secrets);
        TestAccess::share<AuthStore>(APIClient::shared(), *m_queue);
        TestAccess::share<Equalizer>(m_defaults);
        TestAccess::shareIn<RadioPlayer>(*m_player, m_desktop.audioSession, m_desktop.nowPlaying,
                                         m_desktop.remoteCommands, *m_queue, APIClient::shared(),
                                         OfflineStore::shared());
        TestAccess::shareIn<ShazamManager>(m_desktop.microphone, m_files, *m_queue, m_desktop.systemLog,
                                           APIClient::shared(), RadioPlayer::shared(), m_noSuite, m_now);
    }

    const std::function<UserDefaults *()> m_noSuite = [] { return nullptr; };
    const std::function<double()> m_now = [] { return 1e9; };

    const QUrl m_address{QStringLiteral("http://127.0.0.1:9")};
    InstantServer m_pictures{404};
};

} // namespace navorin
