import QtQuick 2.6
import QtQuick.Controls 1.4
import Lumbra.Ostrand 1.0
import Lumbra.SystemUi 1.0
import "/usr/share/org.example.pilot/qml"

Page {
}
