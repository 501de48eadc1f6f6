// A program that ends while threads of its own still hand results to the GUI thread, as the
// drive list's reader and a hung server's answer may at a quit. It must end cleanly: exit
// status 0, never a crash. The test that runs it is in core/async.

#include "async/DetachedThread.h"
#include "async/GuiDelivery.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QTimer>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QObject receiver;
    QPointer<QObject> guard(&receiver);
    // Some threads end while the application does, one never ends (a server that never answers).
    for (int i = 0; i < 3; ++i)
        orwick::startDetached([guard] {
            for (int n = 0; n < 20000; ++n)
                orwick::deliverToGui(guard, [](QObject&) {});
        });
    orwick::startDetached([guard] {
        for (;;)
            orwick::deliverToGui(guard, [](QObject&) {});
    });
    QTimer::singleShot(5, &app, &QCoreApplication::quit);
    return app.exec();
}
