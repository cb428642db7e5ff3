// SPDX-License-Identifier: MIT
import QtQuick

Rectangle {
    width: 460
    height: 30 * (coefficients.length + 1) + 20
    color: "white"

    component Cell: Text {
        width: 110
        horizontalAlignment: Text.AlignRight
        font.pixelSize: 15
    }

    Column {
        anchors.centerIn: parent
        Row {
            height: 30
            Cell { text: "Term"; width: 90; font.bold: true; horizontalAlignment: Text.AlignLeft }
            Cell { text: "Estimate"; font.bold: true }
            Cell { text: "Low"; font.bold: true }
            Cell { text: "High"; font.bold: true }
        }
        Repeater {
            model: coefficients
            Row {
                height: 30
                required property var modelData
                Cell { text: modelData.term; width: 90; horizontalAlignment: Text.AlignLeft }
                Cell { text: modelData.estimate.toPrecision(6) }
                Cell { text: modelData.low.toPrecision(6) }
                Cell { text: modelData.high.toPrecision(6) }
            }
        }
    }
}
