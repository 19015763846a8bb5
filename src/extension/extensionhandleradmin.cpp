// SPDX-License-Identifier: BSD-3-Clause
#include "extensionhandleradmin.h"
#include "extensionhandleradmin_p.h"

#include <core/debugoutput_p.h>

#include <extension/extensioncallback.h>
#include <extension/extensionhandler.h>

#include <QtCore/QDebug>

namespace ExtensionSystem {

using namespace Internal;

namespace {

QString errorText(int code)
{
    switch (code) {
    case ExtensionHandlerAdmin::CallbackNotExists:
    case ExtensionHandlerAdmin::CallbackExists: // the same text for both, as the error table has it
        return QObject::tr("The callback is not exists");
    case ExtensionHandlerAdmin::CallbackInvalid:
        return QObject::tr("The callback is invalid");
    case ExtensionHandlerAdmin::NoPluginContext:
        return QObject::tr("The PluginContext is NULL, cannot generate callback");
    default:
        return QObject::tr("No Error");
    }
}

} // namespace

namespace Internal {

ExtensionHandlerAdminPrivate::ExtensionHandlerAdminPrivate()
    : error(ExtensionHandlerAdmin::NoError)
    , errorString(errorText(ExtensionHandlerAdmin::NoError))
{ }

ExtensionHandlerAdminPrivate::~ExtensionHandlerAdminPrivate() = default;

} // namespace Internal

ExtensionHandlerAdmin::ExtensionHandlerAdmin(Object *parent)
    : ExtensionHandlerAdmin(*new ExtensionHandlerAdminPrivate, parent)
{ }

ExtensionHandlerAdmin::ExtensionHandlerAdmin(ExtensionHandlerAdminPrivate &dd, Object *parent)
    : Object(dd, parent)
{ }

ExtensionHandlerAdmin::~ExtensionHandlerAdmin() = default;

int ExtensionHandlerAdmin::callbackActived(const QString &id, QGenericArgument a0, QGenericArgument a1,
                                           QGenericArgument a2, QGenericArgument a3, QGenericArgument a4,
                                           QGenericArgument a5, QGenericArgument a6, QGenericArgument a7,
                                           QGenericArgument a8, QGenericArgument a9)
{
    Q_UNUSED(id)
    Q_UNUSED(a0)
    Q_UNUSED(a1)
    Q_UNUSED(a2)
    Q_UNUSED(a3)
    Q_UNUSED(a4)
    Q_UNUSED(a5)
    Q_UNUSED(a6)
    Q_UNUSED(a7)
    Q_UNUSED(a8)
    Q_UNUSED(a9)
    return 0;
}

void ExtensionHandlerAdmin::callbackDataChanged(const QString &id, const QString &key, const QVariant &value)
{
    Q_UNUSED(id)
    Q_UNUSED(key)
    Q_UNUSED(value)
}

void ExtensionHandlerAdmin::errorOccured(int error, const QString &errorString)
{
    Q_D(ExtensionHandlerAdmin);
    // Without a context (the -4 failures) the name is empty.
    const QString symbolic = d->context ? d->context->symbolic() : QString();
    ES_DEBUG_IF_SHOWN() << "[ERROR] plugin:" << symbolic << "- ExtensionHandlerAdmin:" << error << "-" << errorString;
}

void ExtensionHandlerAdmin::setPluginContext(PluginContext *context)
{
    Q_D(ExtensionHandlerAdmin);
    d->context = context;
}

ExtensionHandler *ExtensionHandlerAdmin::findExtensionHandler(const QString &id) const
{
    const QString wanted = id.trimmed();
    for (int i = 0; i < childCount(); ++i) {
        auto *handler = dynamic_cast<ExtensionHandler *>(childAt(i));
        if (handler && handler->id() == wanted)
            return handler;
    }
    return nullptr;
}

ExtensionHandler *ExtensionHandlerAdmin::makeExtensionHandler(const QString &id, const QString &plugin,
                                                              const QString &extenedPlugin,
                                                              const QString &extenedPointId)
{
    Q_D(ExtensionHandlerAdmin);
    if (ExtensionHandler *present = findExtensionHandler(id))
        return present;
    if (!d->context) {
        setError(NoPluginContext, errorText(NoPluginContext));
        return nullptr;
    }
    // Constructed with this admin as parent, so the callback is its child from the start.
    auto *callback = new ExtensionCallback(id, plugin, extenedPlugin, extenedPointId, this);
    d->context->registerExtensionHandler(callback);
    clearError();
    return callback;
}

void ExtensionHandlerAdmin::addExtensionHandler(ExtensionHandler *handler)
{
    Q_D(ExtensionHandlerAdmin);
    if (!handler || handler->id().isEmpty()) {
        setError(CallbackInvalid, errorText(CallbackInvalid));
        return;
    }
    if (findExtensionHandler(handler->id())) {
        setError(CallbackExists, errorText(CallbackExists));
        return;
    }
    if (!d->context) {
        setError(NoPluginContext, errorText(NoPluginContext));
        return;
    }
    Object::addChild(handler);
    d->context->registerExtensionHandler(handler);
    clearError();
}

void ExtensionHandlerAdmin::removeExtensionHandler(const QString &id)
{
    ExtensionHandler *handler = findExtensionHandler(id);
    if (!handler) {
        setError(CallbackNotExists, errorText(CallbackNotExists));
        return;
    }
    // The destructors free the item and take the handler out of this admin and of a waiting point.
    delete handler;
}

QVariant ExtensionHandlerAdmin::data(const QString &id, const QString &key)
{
    ExtensionHandler *handler = findExtensionHandler(id);
    if (!handler) {
        setError(CallbackNotExists, errorText(CallbackNotExists));
        return QVariant();
    }
    return handler->data(key);
}

void ExtensionHandlerAdmin::setData(const QString &id, const QString &key, const QVariant &value)
{
    ExtensionHandler *handler = findExtensionHandler(id);
    if (!handler) {
        setError(CallbackNotExists, errorText(CallbackNotExists));
        return;
    }
    handler->setData(key, value);
}

int ExtensionHandlerAdmin::error() const
{
    Q_D(const ExtensionHandlerAdmin);
    return d->error;
}

QString ExtensionHandlerAdmin::errorString() const
{
    Q_D(const ExtensionHandlerAdmin);
    return d->errorString;
}

void ExtensionHandlerAdmin::setError(int error, const QString &errorString)
{
    Q_D(ExtensionHandlerAdmin);
    d->error = error;
    d->errorString = errorString;
    if (error != NoError)
        errorOccured(error, errorString);
}

void ExtensionHandlerAdmin::clearError()
{
    Q_D(ExtensionHandlerAdmin);
    d->error = NoError;
    d->errorString = errorText(NoError);
}

} // namespace ExtensionSystem
