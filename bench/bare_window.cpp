// The smallest program with a Qt Quick window of the main window's size: what any such program
// pays.
#include <QApplication>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QTemporaryFile>

int main(int argc, char* argv[]) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QTemporaryFile content(QStringLiteral("XXXXXX.qml"));
    if (!content.open()) {
        return EXIT_FAILURE;
    }
    content.write("import QtQuick\n"
                  "Rectangle { width: 720; height: 560; color: '#090b13'\n"
                  "    Text { anchors.centerIn: parent; text: 'Vigilo'; color: 'white' } }\n");
    content.close();
    QQuickView view(QUrl::fromLocalFile(content.fileName()));
    view.setTitle(QStringLiteral("Vigilo"));
    view.setFlags(Qt::Window | Qt::FramelessWindowHint);
    view.show();
    return QApplication::exec();
}
