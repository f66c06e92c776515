#include "MainWindow.h"

#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    // The looks are the app's own; the kit keeps its own beside them.
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x28, 0x2a, 0x36));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Button, QColor(0x44, 0x47, 0x5a));
    dark.setColor(QPalette::ButtonText, Qt::white);
    QApplication::setPalette(dark);
    app.setStyleSheet("QPushButton { padding: 8px; border: 1px solid #6272a4; }");
    QTranslator kitTexts; // lives as long as the application
    if (kitTexts.load(QLocale(), "parloquin", "_", KIT_TRANSLATIONS))
        QCoreApplication::installTranslator(&kitTexts);
    MainWindow window;
    window.show();
    return QApplication::exec();
}
