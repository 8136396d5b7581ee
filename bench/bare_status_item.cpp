// The smallest program with a status item: what any such program pays until a panel has it.
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), qApp, &QCoreApplication::quit);
    constexpr int side = 22;
    QPixmap picture(side, side);
    picture.fill(Qt::white);
    QSystemTrayIcon item{QIcon(picture)};
    item.setContextMenu(&menu);
    item.show();
    return QApplication::exec();
}
