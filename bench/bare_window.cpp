// SPDX-License-Identifier: MIT
// The least that a window of this toolkit can be: what starting one costs on this machine.
#include <QApplication>
#include <QWidget>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare window"));
    window.resize(320, 440);
    window.show();
    return QApplication::exec();
}
