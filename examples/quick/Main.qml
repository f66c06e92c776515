import QtQuick
import QtQuick.Window
import Parloquin

Window {
    id: root
    width: 390
    height: 844
    visible: true
    title: "Quick host"
    property string state: "Not verified"

    Text {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: button.top; margins: 24 }
        text: root.state
    }
    Rectangle {
        id: button
        objectName: "verify"
        anchors.centerIn: parent
        width: 200
        height: 48
        color: "#1b7a4b"
        opacity: verification.active ? 0.5 : 1
        Text { anchors.centerIn: parent; color: "white"; text: "Verify my number" }
        MouseArea { anchors.fill: parent; onClicked: verification.open() }
    }

    Verification {
        id: verification
        onSucceeded: sessionId => {
            // A real app gives the id to its back end now, and believes only what that says.
            root.state = "Verified, session " + sessionId
            close()
        }
        onFailed: error => {
            root.state = error === Verification.ServerError ? "No answer" : "Not verified"
        }
    }
}
