// A host in small: sends `country` to the service at argv[1], and quits when the call has its
// outcome, or when a byte comes on standard input. argv[2] "exit": without returning from main().
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/MainQueue.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace parloquin;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const bool exits = argc > 2 && argv[2] == std::string("exit");
    setServiceHost(QString::fromLocal8Bit(argv[1]));

    QSocketNotifier told(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&told, &QSocketNotifier::activated, &app, [exits] {
        if (exits)
            std::exit(0);
        QCoreApplication::quit();
    });
    ApiRequest::country([](const Result<CountryResponseModel> &) {
        std::fputs("completed\n", stderr);
        onMain([] { QCoreApplication::quit(); });
    });
    return QCoreApplication::exec();
}
