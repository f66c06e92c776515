// A host that shows the kit at once.
#include "FirstPaint.h"

#include <Parloquin/Parloquin.h>

#include <memory>

int main(int argc, char **argv)
{
    std::FILE *const results = quietOutput();
    const QApplication app(argc, argv);
    const std::unique_ptr<QWidget> container(Parloquin().viewControllerForLogin());
    container->resize(390, 844);
    container->show();
    return runToFirstPaint(results, QStringLiteral("ThirdPartyKitTableCell"));
}
