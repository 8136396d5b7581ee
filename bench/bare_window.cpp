// The smallest program with a Qt Quick window of the main window's size: what any such program
// pays.
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickView>
#include <QSGRendererInterface>

int main(int argc, char* argv[]) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QQuickView view;
    // No file: one would be left behind when the benchmark ends the program.
    QQmlComponent component(view.engine());
    component.setData("import QtQuick\n"
                      "Rectangle { width: 720; height: 560; color: '#090b13'\n"
                      "    Text { anchors.centerIn: parent; text: 'Vigilo'; color: 'white' } }\n",
                      QUrl());
    view.setContent(QUrl(), &component, component.create());
    view.setTitle(QStringLiteral("Vigilo"));
    view.setFlags(Qt::Window | Qt::FramelessWindowHint);
    view.show();
    return QGuiApplication::exec();
}
