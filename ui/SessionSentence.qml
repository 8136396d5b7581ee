import QtQuick
import Vigilo

// How long the next session lasts and what happens to the screen meanwhile, as a sentence with two menus.
Capsule {
    id: sentence

    required property VigiloViewModel model

    width: row.width + 20
    height: row.height + 20
    Accessible.role: Accessible.Grouping
    Accessible.name: "For " + sentence.model.durationText + " using " + sentence.model.modeTitle

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 9

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: "For"
            size: 15
            rounded: true
            font.weight: Font.Medium
            color: Theme.secondary
        }

        ChoiceMenu {
            id: durationMenu

            label: "Awake duration"
            value: sentence.model.durationText
            symbol: "clock"
            rows: sentence.model.durationRows
            currentIndex: sentence.model.durationIndex
            onChosen: index => sentence.model.chooseDuration(index)
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: "using"
            size: 15
            rounded: true
            font.weight: Font.Medium
            color: Theme.secondary
        }

        ChoiceMenu {
            id: modeMenu

            label: "Screen mode"
            value: sentence.model.modeTitle
            symbol: sentence.model.modeSymbol
            rows: sentence.model.modeRows
            rowSymbols: sentence.model.modeRowSymbols
            currentIndex: sentence.model.modeIndex
            onChosen: index => sentence.model.chooseMode(index)
        }
    }
}
