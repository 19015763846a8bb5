// SPDX-License-Identifier: BSD-3-Clause
#include "testsupport.h"

#include <extension/extensioncallback.h>
#include <extension/extensiondata.h>
#include <extension/extensionhandleradmin.h>
#include <extension/extensionmanager.h>
#include <extension/extensionpoint.h>
#include <extension/extensionpointadmin.h>
#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>
#include <plugin/plugin.h>
#include <plugin/pluginmanager.h>

#include <QtTest>

using namespace ExtensionSystem;
using namespace ExtensionSystem::Internal;
using namespace TestSupport;

namespace {

class OwnHandler : public ExtensionHandler
{
public:
    using ExtensionHandler::ExtensionHandler;
    int active(QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
               QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument) override
    {
        return 5;
    }
    void dataChanged(const QString &, const QVariant &) override { }
};

// Records what its callbacks bring; it never has a context.
class RecordingAdmin : public ExtensionHandlerAdmin
{
public:
    int callbackActived(const QString &id, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
                        QGenericArgument) override
    {
        calls << QStringLiteral("active:") + id;
        return 3;
    }
    void callbackDataChanged(const QString &id, const QString &key, const QVariant &value) override
    {
        calls << QStringLiteral("changed:%1:%2=%3").arg(id, key, value.toString());
    }
    void errorOccured(int error, const QString &errorString) override
    {
        errors << QStringLiteral("%1 %2").arg(error).arg(errorString);
    }
    QStringList calls;
    QStringList errors;
};

// ext.host with its point open, and ext.admin, whose two items for that point
// came from its extension file; the first call of the first item starts it.
struct AdminPlugin
{
    PluginFramework framework;
    PluginManager *manager = nullptr;
    ExtensionPoint *point = nullptr;
    ExtensionData *first = nullptr;
    ExtensionData *second = nullptr;

    bool setUp()
    {
        deployPlugin(QStringLiteral("ext.host"));
        const QString library = deployPlugin(QStringLiteral("ext.admin"));
        QFile::copy(QFileInfo(builtPlugin(QStringLiteral("ext.admin"))).absolutePath()
                            + QStringLiteral("/extension.xml"),
                    QFileInfo(library).absolutePath() + QStringLiteral("/extension.xml"));
        manager = framework.findChild<PluginManager *>();
        framework.init();
        manager->start(QStringLiteral("ext.host"));
        point = frameworkContext(&framework)
                        ->extensionManager->pointAdmin()
                        ->findExtensionPoint(QStringLiteral("test.point"));
        if (!point || !QTest::qWaitFor([this] { return point->childCount() == 2; }))
            return false;
        first = point->extensionData(QStringLiteral("admin.first"));
        second = point->extensionData(QStringLiteral("admin.second"));
        return first && second;
    }
    int state() const { return manager->find(QStringLiteral("ext.admin"))->state(); }
    ExtensionHandlerAdmin *admin() const
    {
        return first->extensionHandler() ? dynamic_cast<ExtensionHandlerAdmin *>(first->extensionHandler()->parent())
                                         : nullptr;
    }
};

} // namespace

class tst_ExtensionHandlerAdmin : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        resetApplicationDirectory();
        clearPluginLog();
    }
    void oneAdminServesAPluginsExtensions();
    void adminMakesAddsAndRemovesHandlers();
    void callbacksAndFailuresWithoutAPlugin();
};

void tst_ExtensionHandlerAdmin::oneAdminServesAPluginsExtensions()
{
    AdminPlugin p;
    QVERIFY(p.setUp());
    QCOMPARE(p.state(), int(PluginInfo::Resolved));

    // The first item starts the plug-in; its admin gets the stored call under the item's id.
    const QString argument = QStringLiteral("one");
    QCOMPARE(p.first->active(Q_ARG(QString, argument)), 0);
    QCOMPARE(p.state(), int(PluginInfo::Active));
    QCOMPARE(pluginLog(), QStringList({"start:ext.admin", "actived:admin.first:one"}));
    // Both items have their callbacks now, and each call comes back with the admin's answer.
    QCOMPARE(p.second->active(), 22);
    QCOMPARE(p.first->active(), 11);
    QCOMPARE(pluginLog().mid(2), QStringList({"actived:admin.second:", "actived:admin.first:"}));

    auto *callback = dynamic_cast<ExtensionCallback *>(p.first->extensionHandler());
    QVERIFY(callback);
    QCOMPARE(callback->plugin(), QStringLiteral("ext.admin"));
    QCOMPARE(callback->extPoint(), QStringLiteral("test.point"));
    QCOMPARE(callback->extPlugin(), QStringLiteral("ext.host"));
    ExtensionHandlerAdmin *admin = p.admin();
    QVERIFY(admin);
    QCOMPARE(admin->childCount(), 2);
    QCOMPARE(admin->findExtensionHandler(QStringLiteral(" admin.second ")), p.second->extensionHandler());

    // Attribute changes travel both ways, and the admin is not told of its own writes.
    clearPluginLog();
    p.first->setAttribute(QStringLiteral("title"), QStringLiteral("Renamed"));
    admin->setData(QStringLiteral("admin.second"), QStringLiteral("title"), QStringLiteral("Written"));
    QCOMPARE(p.second->attribute(QStringLiteral("title")).toString(), QStringLiteral("Written"));
    QCOMPARE(admin->data(QStringLiteral("admin.first"), QStringLiteral("title")).toString(), QStringLiteral("Renamed"));
    QCOMPARE(pluginLog(), QStringList({"changed:admin.first:title=Renamed"}));

    // The plug-in deletes its admin, and everything in it, when it stops.
    p.framework.stop();
    QCOMPARE(p.state(), int(PluginInfo::Resolved));
}

void tst_ExtensionHandlerAdmin::adminMakesAddsAndRemovesHandlers()
{
    AdminPlugin p;
    QVERIFY(p.setUp());
    QCOMPARE(p.first->active(), 0); // starts ext.admin
    ExtensionHandlerAdmin *admin = p.admin();
    QVERIFY(admin);
    ExtensionHandler *callback = p.first->extensionHandler();

    // A failure is logged under the plug-in's name and stays until a success clears it.
    QTest::ignoreMessage(QtDebugMsg,
                         "[ERROR] plugin: \"ext.admin\" - ExtensionHandlerAdmin: -1 - \"The callback is not exists\"");
    admin->removeExtensionHandler(QStringLiteral("admin.none"));
    QCOMPARE(admin->error(), int(ExtensionHandlerAdmin::CallbackNotExists));

    // Asking again for a present id gives the same callback and registers nothing:
    // taken off its item, it stays off.
    frameworkContext(&p.framework)->extensionManager->unregisterExtensionHandler(QStringLiteral("admin.first"));
    QVERIFY(!p.first->extensionHandler());
    QCOMPARE(admin->makeExtensionHandler(QStringLiteral(" admin.first "), QStringLiteral("ext.admin"),
                                         QStringLiteral("ext.host"), QStringLiteral("test.point")),
             callback);
    QVERIFY(!p.first->extensionHandler());
    QCOMPARE(admin->childCount(), 2);
    QCOMPARE(admin->error(), int(ExtensionHandlerAdmin::CallbackNotExists));

    // A new id is made and registered: it waits in the point and meets its item when it comes.
    ExtensionHandler *third = admin->makeExtensionHandler(QStringLiteral("admin.third"), QStringLiteral("ext.admin"),
                                                          QStringLiteral("ext.host"), QStringLiteral("test.point"));
    QVERIFY(third && third != callback);
    QCOMPARE(admin->error(), int(ExtensionHandlerAdmin::NoError));
    QCOMPARE(admin->errorString(), QStringLiteral("No Error"));
    p.point->updateExtensionText({QStringLiteral("<ExtData plugin=\"ext.admin\" extPlugin=\"ext.host\">"
                                                 "<Item id=\"admin.third\"/></ExtData>")});
    QCOMPARE(p.point->extensionData(QStringLiteral("admin.third"))->extensionHandler(), third);

    // A handler of the plug-in's own making joins the admin; one with a taken id does not.
    auto *own = new OwnHandler(QStringLiteral("admin.own"), QStringLiteral("ext.admin"), QStringLiteral("test.point"),
                               QStringLiteral("ext.host"));
    admin->addExtensionHandler(own);
    QCOMPARE(admin->error(), int(ExtensionHandlerAdmin::NoError));
    QCOMPARE(own->parent(), static_cast<Object *>(admin));
    OwnHandler taken(QStringLiteral("admin.second"), QStringLiteral("ext.admin"), QStringLiteral("test.point"),
                     QStringLiteral("ext.host"));
    QTest::ignoreMessage(QtDebugMsg,
                         "[ERROR] plugin: \"ext.admin\" - ExtensionHandlerAdmin: -2 - \"The callback is not exists\"");
    admin->addExtensionHandler(&taken);
    QCOMPARE(admin->error(), int(ExtensionHandlerAdmin::CallbackExists));
    QVERIFY(!taken.parent());
    QCOMPARE(p.second->extensionHandler(), admin->findExtensionHandler(QStringLiteral("admin.second")));

    // Removing a handler destroys it and frees its item.
    admin->removeExtensionHandler(QStringLiteral("admin.second"));
    QVERIFY(!admin->findExtensionHandler(QStringLiteral("admin.second")));
    QVERIFY(!p.second->extensionHandler());
    QCOMPARE(p.second->attribute(QStringLiteral("ExtensionHandler")).toString(), QStringLiteral("stop"));
    p.framework.stop();
    QCOMPARE(p.state(), int(PluginInfo::Resolved));
}

void tst_ExtensionHandlerAdmin::callbacksAndFailuresWithoutAPlugin()
{
    // The stored strings are trimmed; the attributes keep the arguments, and the
    // extended plug-in comes before the point.
    ExtensionCallback loose(QStringLiteral(" cb "), QStringLiteral(" supplier "), QStringLiteral(" host "),
                            QStringLiteral(" point "), nullptr);
    QCOMPARE(loose.id(), QStringLiteral("cb"));
    QCOMPARE(loose.plugin(), QStringLiteral("supplier"));
    QCOMPARE(loose.extenedPlugin(), QStringLiteral("host"));
    QCOMPARE(loose.extenedPointId(), QStringLiteral("point"));
    QCOMPARE(loose.extPoint(), QStringLiteral(" point "));
    QCOMPARE(loose.extPlugin(), QStringLiteral(" host "));
    // With no admin above it a callback does nothing.
    QCOMPARE(loose.active(), -1);
    loose.dataChanged(QStringLiteral("k"), 1);

    RecordingAdmin admin;
    auto *callback = new ExtensionCallback(QStringLiteral("cb"), QStringLiteral("p"), QStringLiteral("host"),
                                           QStringLiteral("point"), &admin);
    ExtensionData item;
    item.setExtensionHandler(callback);
    QCOMPARE(item.active(), 3);
    item.setAttribute(QStringLiteral("k"), 1);
    QCOMPARE(admin.calls, QStringList({"active:cb", "changed:cb:k=1"}));

    // Found by a padded id even without a context, which a new id would need.
    QCOMPARE(admin.makeExtensionHandler(QStringLiteral(" cb "), QString(), QString(), QString()),
             static_cast<ExtensionHandler *>(callback));
    QVERIFY(admin.errors.isEmpty());
    QVERIFY(!admin.makeExtensionHandler(QStringLiteral("new"), QString(), QString(), QString()));
    QCOMPARE(admin.childCount(), 1);

    // Every failure sets the error first and then reports it.
    OwnHandler nameless(QString(), QStringLiteral("p"), QStringLiteral("point"), QStringLiteral("host"));
    OwnHandler fresh(QStringLiteral("fresh"), QStringLiteral("p"), QStringLiteral("point"), QStringLiteral("host"));
    admin.addExtensionHandler(nullptr);
    admin.addExtensionHandler(&nameless);
    admin.addExtensionHandler(&fresh);
    admin.removeExtensionHandler(QStringLiteral("unknown"));
    QVERIFY(!admin.data(QStringLiteral("unknown"), QStringLiteral("k")).isValid());
    admin.setData(QStringLiteral("unknown"), QStringLiteral("k"), 2);
    QCOMPARE(admin.errors,
             QStringList({"-4 The PluginContext is NULL, cannot generate callback", "-3 The callback is invalid",
                          "-3 The callback is invalid", "-4 The PluginContext is NULL, cannot generate callback",
                          "-1 The callback is not exists", "-1 The callback is not exists",
                          "-1 The callback is not exists"}));
    QCOMPARE(admin.error(), int(ExtensionHandlerAdmin::CallbackNotExists));
    QVERIFY(!fresh.parent());
    admin.clearError();
    QCOMPARE(admin.error(), int(ExtensionHandlerAdmin::NoError));
    QCOMPARE(admin.errorString(), QStringLiteral("No Error"));
    admin.setError(0, QStringLiteral("quiet"));
    QCOMPARE(admin.errors.size(), 7);

    // A callback moved out from under its admin stops working.
    Object elsewhere;
    elsewhere.addChild(callback);
    QCOMPARE(item.active(), -1);
    item.setAttribute(QStringLiteral("k"), 2);
    QCOMPARE(admin.calls.size(), 2);
    QCOMPARE(admin.childCount(), 0);

    // The base admin answers 0, and its log has an empty name where no context is set.
    ExtensionHandlerAdmin plain;
    auto *plainCallback = new ExtensionCallback(QStringLiteral("x"), QString(), QString(), QString(), &plain);
    QCOMPARE(plainCallback->active(), 0);
    QTest::ignoreMessage(QtDebugMsg, "[ERROR] plugin: \"\" - ExtensionHandlerAdmin: -4 - \"The PluginContext is NULL, "
                                     "cannot generate callback\"");
    QVERIFY(!plain.makeExtensionHandler(QStringLiteral("y"), QString(), QString(), QString()));
    QCOMPARE(plain.error(), int(ExtensionHandlerAdmin::NoPluginContext));
    plain.removeExtensionHandler(QStringLiteral(" x "));
    QCOMPARE(plain.childCount(), 0);
}

QTEST_MAIN(tst_ExtensionHandlerAdmin)
#include "tst_extensionhandleradmin.moc"
