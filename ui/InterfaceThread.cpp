#include "ui/InterfaceThread.h"

#include <QCoreApplication>
#include <QThread>

namespace Lumora {

void runOnInterfaceThread(const std::function<void()>& task) {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app || QThread::currentThread() == app->thread()) {
        task();
        return;
    }
    // The caller waits for the interface thread, never the other way round:
    // the interface thread does not wait on procedure callers.
    QMetaObject::invokeMethod(app, task, Qt::BlockingQueuedConnection);
}

} // namespace Lumora
