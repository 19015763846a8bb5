// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_OBJECT_H
#define EXTENSIONSYSTEM_OBJECT_H

#include "extensionsystem_global.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ExtensionSystem {

class IObjectNotifier;

namespace Internal {
class ObjectPrivate;
}

// A node of the extension tree: ordered owned children, attributes by key, integer
// data roles naming some of the attributes, and notifiers told of what happens.
// Events climb from a node to its parent; a root keeps them until it is attached.
class EXTENSIONSYSTEM_EXPORT Object
{
public:
    explicit Object(Object *parent = nullptr);
    virtual ~Object();

    virtual void attributeChanged(const QString &key, const QVariant &value);
    virtual void aboutDestory(Object *object);
    virtual void childAdded(Object *child);
    virtual void aboutRemoveChild(Object *child);
    virtual bool handleEvent(const QHash<QString, QVariant> &event, Object *source);

    Object *parent() const;
    int childCount() const;
    Object *childAt(int index) const;
    QList<Object *> children() const;
    int childIndexOf(Object *child);

    bool addChild(Object *child);
    bool insertChild(int index, Object *child);
    bool removeChild(int index);
    bool removeChild(Object *child);
    Object *takeChild(int index);
    void setParent(Object *parent);

    QVariant attribute(const QString &key) const;
    bool attributeContains(const QString &key) const;
    QStringList attributes() const;
    QHash<QString, QVariant> attributeData() const;
    bool setAttribute(const QString &key, const QVariant &value);
    bool setAttributeData(const QHash<QString, QVariant> &data);

    QVariant data(int role) const;
    bool setData(int role, const QVariant &value);
    QMap<int, QString> dataRoles() const;
    bool setDataRoles(const QMap<int, QString> &roles, bool replace);
    QString roleName(int role) const;
    int attributeRole(const QString &key) const;

    Object *find(const QString &key, const QVariant &value);
    Object *find(int role, const QVariant &value);
    bool cloneData(Object *other);

    void setObjectNotifier(IObjectNotifier *notifier);
    void unsetObjectNotifier(IObjectNotifier *notifier);

protected:
    Object(Internal::ObjectPrivate &dd, Object *parent);

    QList<Object *> &childList();

    QScopedPointer<Internal::ObjectPrivate> d_ptr;

private:
    Q_DISABLE_COPY(Object)
    ES_DECLARE_PRIVATE(Object)
};

} // namespace ExtensionSystem

#endif // EXTENSIONSYSTEM_OBJECT_H
