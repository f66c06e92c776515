// A host that shows a label.
#include "FirstPaint.h"

#include <QtWidgets/QLabel>

int main(int argc, char **argv)
{
    std::FILE *const results = quietOutput();
    const QApplication app(argc, argv);
    QWidget window;
    auto *const label = new QLabel(QStringLiteral("A host"), &window);
    label->setObjectName(QStringLiteral("label"));
    window.resize(390, 844);
    window.show();
    return runToFirstPaint(results, QStringLiteral("label"));
}
