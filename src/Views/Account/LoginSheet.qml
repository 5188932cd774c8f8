import QtQuick
import Navorin

SheetPage {
    id: sheet

    readonly property LoginSheetState login: LoginSheetState {
        onFinished: sheet.closeRequested()
    }
    readonly property int step: login.step
    readonly property bool isCodeStep: step === LoginSheetState.SignupTelegram || step === LoginSheetState.ForgotReset
    readonly property bool isReset: step === LoginSheetState.ForgotReset
    readonly property bool choosesFlow: step === LoginSheetState.Login || step === LoginSheetState.SignupForm

    title: "حساب کاربری"
    canGoBack: isCodeStep || step === LoginSheetState.ForgotIdentifier
    onBackRequested: login.goBack()
    onStepChanged: change.restart()

    NumberAnimation {
        id: change
        target: sheet
        property: "contentOpacity"
        from: 0
        to: 1
        duration: 250
        easing.type: Easing.InOutQuad
    }

    component MainButton: NButton {
        property bool isComplete: true

        width: parent.width
        implicitHeight: Theme.grown(52, 24)
        isColored: true
        leadingColor: Qt.rgba(0.39, 0.4, 0.95, 1)
        trailingColor: Theme.violet
        isWaiting: sheet.login.isSubmitting
        enabled: isComplete && !isWaiting
        opacity: isComplete ? 1 : 0.55
    }
    component Line: Row {
        id: line

        property string text
        property string symbol
        property color color: Theme.white(0.6)

        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 8

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: line.symbol
            size: 18
            color: line.color
            visible: line.symbol !== ""
        }
        NText {
            text: line.text
            role: Theme.caption
            color: line.color
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    component Note: NText {
        width: parent.width
        role: Theme.caption
        color: Theme.white(0.7)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // The picture over each step.
    Item {
        width: parent.width
        height: 64

        ShaderEffect {
            readonly property color tone: Theme.accent
            readonly property real strength: 0.28

            anchors.centerIn: parent
            width: 300
            height: 220
            fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
        }
        Icon {
            anchors.centerIn: parent
            symbol: sheet.step === LoginSheetState.ForgotDone ? "checkmark.circle.fill" : "dot.radiowaves.left.and.right"
            size: 48
            color: sheet.step === LoginSheetState.ForgotDone ? Theme.success : "white"
        }
    }
    Column {
        width: parent.width
        bottomPadding: 8

        Note {
            text: sheet.login.heroTitle
            role: Theme.screenTitle
            color: "white"
            Accessible.role: Accessible.Heading
        }
        Note { text: sheet.login.heroSubtitle }
    }

    SegmentedControl {
        width: parent.width
        visible: sheet.choosesFlow
        labels: ["ورود", "ثبتنام"]
        current: sheet.login.mode
        onChosen: index => sheet.login.mode = index
    }
    NField {
        width: parent.width
        visible: sheet.step === LoginSheetState.SignupForm
        symbol: "person.text"
        placeholderText: "نام نمایشی (اختیاری)"
        onVisibleChanged: if (visible) forceActiveFocus()
        text: sheet.login.displayName
        onTextEdited: sheet.login.displayName = text
    }
    NField {
        width: parent.width
        visible: sheet.choosesFlow
        focus: true
        symbol: "person"
        placeholderText: sheet.step === LoginSheetState.Login ? "نام کاربری یا آیدی تلگرام" : "نام کاربری (انگلیسی)"
        text: sheet.login.username
        onTextEdited: sheet.login.username = text
    }
    NField {
        width: parent.width
        visible: sheet.choosesFlow
        symbol: "lock"
        isSecret: true
        placeholderText: "رمز عبور"
        text: sheet.login.password
        onTextEdited: sheet.login.password = text
        onAccepted: if (main.enabled) main.clicked()
    }
    NField {
        width: parent.width
        visible: sheet.step === LoginSheetState.ForgotIdentifier
        symbol: "person"
        onVisibleChanged: if (visible) forceActiveFocus()
        placeholderText: "نام کاربری یا آیدی تلگرام"
        text: sheet.login.identifier
        onTextEdited: sheet.login.identifier = text
        onAccepted: if (main.enabled) main.clicked()
    }

    Loader {
        width: parent.width
        active: sheet.isCodeStep
        visible: active
        sourceComponent: sheet.login.hasSession ? codeStep : waiting

        Component {
            id: waiting
            Item {
                implicitHeight: 80
                Spinner { anchors.centerIn: parent; size: 28 }
            }
        }
        Component {
            id: codeStep
            Column {
                spacing: 16

                Note {
                    text: "اعتبار نشست: " + sheet.login.timeLeft
                    color: sheet.login.isTimeShort ? Theme.warning : Theme.white(0.45)
                    visible: sheet.login.timeLeft !== ""
                }
                Column {
                    width: parent.width

                    Note {
                        // Handles read left to right within the sentence.
                        text: sheet.isReset ? "کد به تلگرام \u2066" + sheet.login.codeReceiver + "\u2069 ارسال شد"
                                            : "ربات \u2066@" + sheet.login.botHandle + "\u2069"
                        isOutside: true
                        color: Theme.white(0.85)
                    }
                    Note { text: "توی تلگرام روی Start بزن تا کد نمایش داده بشه" }
                }
                NButton {
                    width: parent.width
                    implicitHeight: Theme.grown(48, 24)
                    text: "باز کردن تلگرام"
                    symbol: "paperplane.fill"
                    isColored: true
                    leadingColor: Qt.darker(Qt.rgba(0.13, 0.62, 0.85, 1), 1.3)
                    onClicked: sheet.login.openTelegram()
                }
                OTPBoxes {
                    width: parent.width
                    focus: true
                    code: sheet.login.otpCode
                    isWrong: sheet.login.errorMessage !== ""
                    onEdited: text => sheet.login.otpCode = text
                    onAccepted: if (main.enabled) main.clicked()
                }
                NField {
                    width: parent.width
                    visible: sheet.isReset
                    symbol: "lock.rotation"
                    isSecret: true
                    placeholderText: "رمز عبور جدید"
                    text: sheet.login.newPassword
                    onTextEdited: sheet.login.newPassword = text
                    onAccepted: if (main.enabled) main.clicked()
                }
            }
        }
    }

    Rectangle {
        width: parent.width
        height: Math.max(44, complaint.height + 20)
        visible: sheet.login.errorMessage !== ""
        radius: Theme.codeBoxRadius
        color: ThemeFunctions.blend(Theme.sheet, Theme.live, 0.16)
        border.width: 1
        border.color: ThemeFunctions.blend(Theme.sheet, Theme.live, 0.4)

        Icon {
            id: sign
            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.triangle.fill"
            size: 20
            color: Theme.live
        }
        NText {
            id: complaint
            anchors.left: sign.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            text: sheet.login.errorMessage
            role: Theme.caption
            isOutside: true
            color: Qt.lighter(Theme.live, 1.2)
            wrapMode: Text.Wrap
            maximumLineCount: 4
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
    Line {
        visible: sheet.step === LoginSheetState.ForgotDone
        text: "حالا با رمز جدید وارد شو"
        symbol: "lock.open.fill"
    }

    MainButton {
        id: main

        readonly property var offer: ({
            [LoginSheetState.Login]: ["ورود به رادیو", "play.fill"],
            [LoginSheetState.SignupForm]: ["ادامه و تایید با تلگرام", "paperplane.fill"],
            [LoginSheetState.SignupTelegram]: ["تایید و ورود", "sparkles"],
            [LoginSheetState.ForgotIdentifier]: ["ارسال کد به تلگرام", "paperplane.fill"],
            [LoginSheetState.ForgotReset]: ["ثبت رمز جدید", "checkmark"],
            [LoginSheetState.ForgotDone]: ["رفتن به صفحه ورود", ""]
        })[sheet.step]

        visible: !sheet.isCodeStep || sheet.login.hasSession
        text: offer[0]
        symbol: offer[1]
        isComplete: ({
            [LoginSheetState.Login]: sheet.login.loginValid,
            [LoginSheetState.SignupForm]: sheet.login.signupValid,
            [LoginSheetState.ForgotIdentifier]: sheet.login.identifierValid
        })[sheet.step] ?? (sheet.step === LoginSheetState.ForgotDone || sheet.login.codeValid)
        onClicked: ({
            [LoginSheetState.Login]: () => sheet.login.submitLogin(),
            [LoginSheetState.SignupForm]: () => sheet.login.startSignup(),
            [LoginSheetState.SignupTelegram]: () => sheet.login.verifySignup(),
            [LoginSheetState.ForgotIdentifier]: () => sheet.login.startForgot(),
            [LoginSheetState.ForgotReset]: () => sheet.login.submitReset(),
            [LoginSheetState.ForgotDone]: () => sheet.login.finishReset()
        })[sheet.step]()
    }
    TextButton {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: sheet.step === LoginSheetState.Login
        text: "رمزم رو فراموش کردم"
        onClicked: sheet.login.forget()
    }
    Line {
        visible: sheet.step === LoginSheetState.SignupForm
        text: "ثبتنام با تایید ربات تلگرام انجام میشه"
        symbol: "checkmark.shield"
    }
}
