import QtQuick 2.6
import QtQuick.LocalStorage 2.0
import Lumbra.Ostrand 1.0

// The front page: a title, and the length of the whole route.
Page {
    property real totalKm: 0

    Column {
        anchors.fill: parent

        Text {
            text: qsTr("Flight log")
        }
        Text {
            text: qsTr("%1 km in all").arg(totalKm.toFixed(1))
        }
    }
}
