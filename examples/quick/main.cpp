#include <QtQml/QQmlApplicationEngine>
#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    // Not a QGuiApplication: the kit's screens are widgets.
    QApplication app(argc, argv);
    QQmlApplicationEngine engine;
    engine.addImportPath(PARLOQUIN_QML_PATH);
    engine.load(QUrl("qrc:/Main.qml"));
    return engine.rootObjects().isEmpty() ? 1 : QApplication::exec();
}
