// A Qt Quick app that has no QApplication is told so by the element, and goes on.
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

#include <cstdio>

int main(int argc, char **argv)
{
    const QGuiApplication app(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(IMPORT_PATH));
    static bool isSaid = false;
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        isSaid |= text.contains(QStringLiteral("make a QApplication in main()"));
        std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    QQmlComponent component(&engine);
    component.setData("import Parloquin\nVerification { }", QUrl());
    const std::unique_ptr<QObject> element(component.create());
    std::fprintf(stderr, "%s\n", qPrintable(component.errorString()));
    return element && QMetaObject::invokeMethod(element.get(), "open") && isSaid
            && !element->property("active").toBool()
        ? 0
        : 1;
}
