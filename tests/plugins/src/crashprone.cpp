// SPDX-License-Identifier: BSD-3-Clause
// A plug-in that dies where ES_TEST_CRASH says: "<where>-<how>", where is one of
// static, root, start, stop, active and how one of segv, abort, throw, exit,
// hang. Without the variable it behaves.
#include "pluginlog.h"

#include <ExtensionSystem/ExtensionHandler>
#include <ExtensionSystem/IPluginActivator>
#include <ExtensionSystem/PluginContext>

#include <QtCore/QByteArray>
#include <QtCore/QThread>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace {

void dieIf(const char *where)
{
    const QByteArray mode = qgetenv("ES_TEST_CRASH");
    if (!mode.startsWith(QByteArray(where) + '-'))
        return;
    const QByteArray how = mode.mid(int(qstrlen(where)) + 1);
    // Said on stderr first, so that a test can wait for it.
    std::fprintf(stderr, "crash.prone: %s-%s now\n", where, how.constData());
    std::fflush(stderr);
    if (how == "segv") {
        // A null pointer dereferenced, as in a real plug-in bug.
        volatile int *volatile nowhere = nullptr;
        *nowhere = 1;
    } else if (how == "abort") {
        std::abort();
    } else if (how == "throw") {
        throw std::runtime_error("crash.prone throws");
    } else if (how == "exit") {
        ::_exit(3);
    } else if (how == "hang") {
        for (;;)
            QThread::sleep(1);
    }
}

// Runs while the library is loaded, before any object of it exists.
const bool staticTrap = (dieIf("static"), true);

class CrashHandler : public ExtensionSystem::ExtensionHandler
{
public:
    using ExtensionHandler::ExtensionHandler;

    int active(QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        dieIf("active");
        log(QStringLiteral("active:") + id());
        return 1;
    }
    void dataChanged(const QString &, const QVariant &) override { }
};

} // namespace

class CrashProneActivator : public QObject, public ExtensionSystem::IPluginActivator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "extensionsystem.ipluginactivator/1.0")
    Q_INTERFACES(ExtensionSystem::IPluginActivator)
public:
    CrashProneActivator() { dieIf("root"); }

    void start(ExtensionSystem::PluginContext *context) override
    {
        Q_UNUSED(staticTrap)
        dieIf("start");
        log(QStringLiteral("start:") + context->symbolic());
        handler = new CrashHandler(QStringLiteral("crash.action"), context->symbolic(), QStringLiteral("test.point"),
                                   QStringLiteral("ext.host"));
        context->registerExtensionHandler(handler);
    }
    void stop(ExtensionSystem::PluginContext *context) override
    {
        dieIf("stop");
        log(QStringLiteral("stop:") + context->symbolic());
        context->unregisterExtensionHandler(QStringLiteral("crash.action"));
        delete handler;
        handler = nullptr;
    }

private:
    CrashHandler *handler = nullptr;
};

#include "crashprone.moc"
