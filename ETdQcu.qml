import QtQuick
Rectangle { width: 720; height: 560; color: '#090b13'
    Text { anchors.centerIn: parent; text: 'Vigilo'; color: 'white' } }
