import QtQuick
import Navorin

// What stands above the playlists: the title and the account, the wide cards, and who is not signed in is asked to.
Item {
    id: head

    required property LibraryViewState library
    property bool isStacked: false
    property bool offersOffline: false

    signal accountRequested
    signal offlineRequested

    implicitHeight: column.height

    Column {
        id: column
        width: parent.width
        topPadding: 20
        spacing: 20

        Item {
            width: parent.width
            height: Theme.grown(40, 38)

            NText {
                anchors.left: parent.left
                anchors.right: account.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: "کتابخانه من"
                role: Theme.libraryTitle
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            RoundButton {
                id: account
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: head.library.isSignedIn
                text: "حساب کاربری"
                symbol: "person.crop.circle"
                onClicked: head.accountRequested()
            }
        }
        Grid {
            id: cards

            readonly property bool hasFavorites: head.library.favoriteCount > 0
            readonly property bool isHalved: hasFavorites && head.offersOffline && !head.isStacked
            readonly property real share: isHalved ? (width - spacing) / 2 : width

            width: parent.width
            columns: head.isStacked ? 1 : 2
            spacing: 14
            visible: hasFavorites || head.offersOffline

            OfflineCard {
                id: offline
                width: cards.share
                height: cards.isHalved ? Math.max(implicitHeight, favorites.implicitHeight) : implicitHeight
                visible: head.offersOffline
                onClicked: head.offlineRequested()
            }
            FeatureCard {
                id: favorites
                width: cards.share
                height: cards.isHalved ? offline.height : implicitHeight
                visible: cards.hasFavorites
                symbol: "heart.fill"
                tone: Theme.heart
                text: "آهنگهای پسندیده"
                line: head.library.favoriteCount
                actionSymbol: "play.fill"
                onClicked: head.library.playFavorites()
            }
        }
        Loader {
            width: parent.width
            active: !head.library.isSignedIn
            visible: active

            sourceComponent: EmptyState {
                topPadding: 36
                bottomPadding: 20
                symbol: "person.crop.circle.badge.plus"
                title: "وارد حساب شوید"
                message: "برای دسترسی به پلیلیستهای شخصی و آهنگهای پسندیده، وارد حساب کاربری شوید."

                NButton {
                    text: "ورود / ثبتنام"
                    isPrimary: true
                    onClicked: head.accountRequested()
                }
            }
        }
        NText {
            width: parent.width
            visible: head.library.isSignedIn
            text: "پلیلیستهای من"
            role: Theme.section
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Notice {
            width: parent.width
            text: head.library.errorMessage
            isFailure: true
        }
        NText {
            width: parent.width
            visible: head.library.hasNoPlaylist
            text: "هنوز پلیلیستی نداری. از بخش اسپاتیفای پایین صفحه، پلیلیست ایمپورت کن!"
            role: Theme.caption
            color: Theme.white(0.6)
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 28
            running: head.library.isWaiting
        }
    }
}
