import QtQuick
import Navorin

// The way to what is kept on this machine.
FeatureCard {
    symbol: "arrow.down.circle"
    tone: "#5fd0c5"
    text: "دانلودهای آفلاین"
    line: "آهنگها را برای پخش بدون اینترنت ذخیره کن"
}
