// SPDX-License-Identifier: BSD-3-Clause
#include "harness.h"

#include <objecttree/iobjectnotifier.h>
#include <objecttree/object.h>
#include <objecttree/object_p.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QSet>

#include <array>
#include <cstdio>
#include <memory>

// Random sequences of tree operations, with the tree's invariants checked after
// every step. The harness keeps the caller's side of the contract, which the tree
// does not check for itself:
// - no cycles: a node is never made its own ancestor, by list or by parent field;
// - one owner: a node is never listed by two different nodes;
// - a stale parent field (after takeChild or a direct setParent) is set by the
//   caller, here to null, before the node it names is destroyed;
// - a node is deleted directly only when no node other than its parent lists it.
// Within that, every documented behaviour is allowed, stale states included.

using namespace ExtensionSystem;

namespace FuzzHarness {

namespace {

class Node;

struct World
{
    QHash<Object *, int> alive; // node to its number
    QMap<int, Object *> byNumber; // the same, in the order of creation
    QSet<Object *> died; // destroyed during the current step
    QStringList problems;
    QSet<Object *> mayBeStale; // nodes put into a documented stale state

    void problem(const QString &text) { problems << text; }
};

World *world = nullptr;

class Node : public Object
{
public:
    explicit Node(int number, Object *parent = nullptr)
        : Object(parent)
    {
        world->alive.insert(this, number);
        world->byNumber.insert(number, this);
    }
    ~Node() override
    {
        if (!world->alive.contains(this))
            world->problem(QStringLiteral("a node is destroyed twice"));
        world->byNumber.remove(world->alive.value(this, -1));
        world->alive.remove(this);
        world->died.insert(this);
    }
    Internal::ObjectPrivate *privateData() const { return d_ptr.data(); }
};

Internal::ObjectPrivate *dataOf(Object *object)
{
    return static_cast<Node *>(object)->privateData();
}

// A notifier that counts, and in some modes acts on the tree while it is told.
class Notifier : public IObjectNotifier
{
public:
    enum Mode { Passive, DetachOnRemove, FollowNewChild, DetachOnEvent };
    explicit Notifier(Mode mode)
        : mode(mode)
    { }

    void childAdded(Object *child) override
    {
        ++calls;
        if (mode == FollowNewChild && world->alive.contains(child))
            child->setObjectNotifier(this);
    }
    void aboutRemoveChild(Object *) override
    {
        ++calls;
        if (mode == DetachOnRemove && object)
            object->unsetObjectNotifier(this);
    }
    void aboutDestory(Object *watched) override
    {
        ++calls;
        if (watched != object)
            world->problem(QStringLiteral("aboutDestory for a node the notifier does not watch"));
    }
    bool event(const QHash<QString, QVariant> &) override
    {
        ++calls;
        if (mode == DetachOnEvent && object)
            object->unsetObjectNotifier(this);
        return true;
    }
    void parentChanged(Object *, Object *) override { ++calls; }
    void attributeChanged(const QString &, const QVariant &) override { ++calls; }
    void dataChanged(int, const QVariant &) override { ++calls; }

    Mode mode;
    int calls = 0;
};

class Input
{
public:
    explicit Input(const QByteArray &bytes)
        : bytes(bytes)
    { }
    bool atEnd() const { return position >= bytes.size(); }
    int next() { return atEnd() ? 0 : uchar(bytes.at(position++)); }

private:
    const QByteArray &bytes;
    int position = 0;
};

// ES_FUZZ_TRACE=1 prints every step with the tree before it.
const bool trace = qEnvironmentVariableIsSet("ES_FUZZ_TRACE");

constexpr int NodeSlots = 12;
constexpr int NotifierSlots = 4;
constexpr int MaxSteps = 400;

class Run
{
public:
    Run() { nodeSlots.fill(nullptr); }

    ~Run()
    {
        // After a failed check the tree cannot be trusted to come down cleanly.
        if (world->problems.isEmpty()) {
            dropNotifiers();
            destroyEverything();
        }
    }

    QString execute(const QByteArray &bytes)
    {
        Input input(bytes);
        int steps = 0;
        while (!input.atEnd() && steps++ < MaxSteps) {
            step(input);
            checkInvariants();
            if (!world->problems.isEmpty())
                return QStringLiteral("step %1: %2").arg(steps).arg(world->problems.join(QStringLiteral("; ")));
        }
        dropNotifiers();
        destroyEverything();
        checkInvariants();
        if (!world->alive.isEmpty())
            world->problem(QStringLiteral("%1 nodes outlive the tree").arg(world->alive.size()));
        return world->problems.join(QStringLiteral("; "));
    }

private:
    Object *node(int byte) const
    {
        Object *object = nodeSlots[byte % NodeSlots];
        return object && world->alive.contains(object) ? object : nullptr;
    }

    QList<Object *> aliveNodes() const { return world->byNumber.values(); }

    int timesListed(Object *owner, Object *child) const { return owner->children().count(child); }

    QList<Object *> listers(Object *child) const
    {
        QList<Object *> result;
        for (Object *owner : aliveNodes()) {
            for (int i = 0; i < timesListed(owner, child); ++i)
                result << owner;
        }
        return result;
    }

    // The nodes that go when object is destroyed: it and what its lists hold.
    QSet<Object *> subtree(Object *object) const
    {
        QSet<Object *> result;
        QList<Object *> pending{object};
        while (!pending.isEmpty()) {
            Object *next = pending.takeLast();
            if (result.contains(next))
                continue;
            result.insert(next);
            for (Object *child : next->children())
                pending << child;
        }
        return result;
    }

    bool parentChainHolds(Object *from, Object *wanted) const
    {
        int guard = 0;
        for (Object *at = from; at && guard < 64; at = at->parent(), ++guard) {
            if (at == wanted)
                return true;
        }
        return false;
    }

    // Would giving child the parent (and a place in its list) close a cycle?
    bool wouldCycle(Object *parent, Object *child, bool listed) const
    {
        if (parentChainHolds(parent, child))
            return true;
        return listed && subtree(child).contains(parent);
    }

    // add or insert: after the old parent gives up one entry, nobody but parent may list child.
    bool keepsOneOwner(Object *parent, Object *child) const
    {
        QList<Object *> owners = listers(child);
        if (child->parent() && child->parent() != parent)
            owners.removeOne(child->parent());
        owners.removeAll(parent);
        return owners.isEmpty();
    }

    // Clears parent fields that name a node about to go, where that node does not list them.
    void releaseStaleParents(const QSet<Object *> &doomed)
    {
        for (Object *object : aliveNodes()) {
            Object *parent = object->parent();
            if (parent && doomed.contains(parent) && !parent->children().contains(object))
                object->setParent(nullptr);
        }
    }

    void expectDeath(const QSet<Object *> &doomed) { expected = doomed; }

    void step(Input &input)
    {
        world->died.clear();
        expected.clear();
        const int op = input.next() % 16;
        Object *a = node(input.next());
        Object *b = node(input.next());
        const int number = input.next();
        if (trace)
            std::fprintf(stderr, "op %d a=%d b=%d n=%d | %s\n", op, a ? world->alive.value(a) : -1,
                         b ? world->alive.value(b) : -1, number, qPrintable(describe()));

        switch (op) {
        case 0: { // a new node, perhaps under a
            const int slot = number % NodeSlots;
            if (node(slot))
                break;
            nodeSlots[slot] = new Node(nextNumber++, a);
            break;
        }
        case 1: // addChild
            if (a && b && a != b && !wouldCycle(a, b, true) && keepsOneOwner(a, b)) {
                const bool already = a->children().contains(b);
                if (a->addChild(b) != !already)
                    world->problem(QStringLiteral("addChild result"));
            }
            break;
        case 2: // insertChild, the index taken as it comes, signed
            if (a && b && a != b && !wouldCycle(a, b, true) && keepsOneOwner(a, b)) {
                if (a->children().contains(b))
                    world->mayBeStale.insert(b); // listed twice on purpose
                if (!a->insertChild(int(qint8(number)), b))
                    world->problem(QStringLiteral("insertChild refused"));
            }
            break;
        case 3: // takeChild
            if (a) {
                const int index = int(qint8(number)) % 8;
                Object *expectedChild = a->childAt(index);
                if (expectedChild)
                    world->mayBeStale.insert(expectedChild);
                if (a->takeChild(index) != expectedChild)
                    world->problem(QStringLiteral("takeChild returned another node"));
            }
            break;
        case 4: // removeChild(int): deletes
            if (a) {
                const int index = number % 8;
                Object *child = a->childAt(index);
                if (child) {
                    const QSet<Object *> doomed = subtree(child);
                    releaseStaleParents(doomed);
                    expectDeath(doomed);
                }
                if (a->removeChild(index) != bool(child))
                    world->problem(QStringLiteral("removeChild(int) result"));
            }
            break;
        case 5: // removeChild(Object*): detaches a regular child, deletes one listed otherwise
            if (a && b) {
                const int listed = timesListed(a, b);
                const bool deletes = listed > 0 && (b->parent() != a || listed > 1);
                if (deletes) {
                    const QSet<Object *> doomed = subtree(b);
                    releaseStaleParents(doomed);
                    expectDeath(doomed);
                }
                if (a->removeChild(b) != deletes)
                    world->problem(QStringLiteral("removeChild(Object*) result"));
                if (listed > 0 && !deletes && (b->parent() || a->children().contains(b)))
                    world->problem(QStringLiteral("removeChild(Object*) left the child attached"));
            }
            break;
        case 6: // setParent directly, to a node or to null
            if (b && a != b) {
                Object *parent = (number & 1) ? a : nullptr;
                if (parent && wouldCycle(parent, b, false))
                    break;
                if (parent != b->parent())
                    world->mayBeStale.insert(b);
                b->setParent(parent);
            }
            break;
        case 7: { // raise an event; it climbs to the root or waits there
            if (!a)
                break;
            QHash<QString, QVariant> event{{QStringLiteral("n"), number}};
            a->handleEvent(event, b);
            break;
        }
        case 8: { // attach a notifier
            Notifier *notifier = notifierAt(number);
            if (a)
                a->setObjectNotifier(notifier);
            break;
        }
        case 9: { // detach a notifier from a node, watched or not
            Notifier *notifier = notifierAt(number);
            if (a)
                a->unsetObjectNotifier(notifier);
            break;
        }
        case 10: // destroy a notifier; a new one takes its slot
            notifiers[number % NotifierSlots].reset();
            break;
        case 11: // delete a node directly
            if (a) {
                QList<Object *> owners = listers(a);
                owners.removeAll(a->parent());
                if (!owners.isEmpty())
                    break;
                const QSet<Object *> doomed = subtree(a);
                releaseStaleParents(doomed);
                expectDeath(doomed);
                delete a;
            }
            break;
        case 12: // attributes and roles
            if (a) {
                a->setDataRoles({{number % 4, QStringLiteral("k%1").arg(number % 3)}}, number & 4);
                a->setAttribute(QStringLiteral("k%1").arg(number % 3), number % 5);
            }
            break;
        case 13: // find, by key and by role
            if (a) {
                Object *found = a->find(QStringLiteral("k%1").arg(number % 3), number % 5);
                if (found && !subtree(a).contains(found))
                    world->problem(QStringLiteral("find left the subtree"));
                a->find(number % 4, number % 5);
            }
            break;
        case 14:
            if (a)
                a->cloneData(b);
            break;
        case 15: // a node with a parent hands its waiting events on
            if (a && b && a != b && !wouldCycle(a, b, true) && keepsOneOwner(a, b) && !b->parent())
                a->addChild(b);
            break;
        }
        if (world->died != expected)
            world->problem(QStringLiteral("op %1: %2 nodes destroyed, %3 expected")
                                   .arg(op)
                                   .arg(world->died.size())
                                   .arg(expected.size()));
    }

    // The tree as text, for tracing a failing input: node(parent)[children].
    QString describe() const
    {
        QStringList parts;
        for (Object *object : aliveNodes()) {
            QStringList children;
            for (Object *child : object->children())
                children << QString::number(world->alive.value(child, -1));
            parts << QStringLiteral("%1(%2)[%3]")
                             .arg(world->alive.value(object))
                             .arg(object->parent() ? world->alive.value(object->parent(), -1) : -1)
                             .arg(children.join(QLatin1Char(',')));
        }
        return parts.join(QLatin1Char(' '));
    }

    Notifier *notifierAt(int number)
    {
        std::unique_ptr<Notifier> &slot = notifiers[number % NotifierSlots];
        if (!slot)
            slot.reset(new Notifier(Notifier::Mode((number / NotifierSlots) % 4)));
        return slot.get();
    }

    void checkInvariants()
    {
        const QList<Object *> nodes = aliveNodes();
        for (Object *object : nodes) {
            for (Object *child : object->children()) {
                if (!world->alive.contains(child)) {
                    world->problem(QStringLiteral("a list holds a destroyed node"));
                    return;
                }
            }
            if (object->parent() && !world->alive.contains(object->parent())) {
                world->problem(QStringLiteral("a parent field names a destroyed node"));
                return;
            }
        }
        for (Object *object : nodes) {
            const QList<Object *> owners = listers(object);
            Object *parent = object->parent();
            const bool consistent = parent ? owners == QList<Object *>{parent} : owners.isEmpty();
            if (consistent)
                world->mayBeStale.remove(object);
            else if (!world->mayBeStale.contains(object))
                world->problem(QStringLiteral("node %1 became inconsistent: %2 owners, parent %3")
                                       .arg(world->alive.value(object))
                                       .arg(owners.size())
                                       .arg(parent ? world->alive.value(parent) : -1));
            // A node with a parent has handed on whatever waited at it.
            if (parent && !dataOf(object)->pendingEvents.isEmpty())
                world->problem(QStringLiteral("events wait at a node that has a parent"));
            if (parentChainHolds(parent, object))
                world->problem(QStringLiteral("a parent cycle"));
            for (IObjectNotifier *notifier : dataOf(object)->notifiers) {
                if (notifier->watchedObject() != object)
                    world->problem(QStringLiteral("a node lists a notifier that watches another"));
            }
            const QList<IObjectNotifier *> &listed = dataOf(object)->notifiers;
            if (QSet<IObjectNotifier *>(listed.begin(), listed.end()).size() != listed.size())
                world->problem(QStringLiteral("a notifier listed twice"));
        }
        for (const auto &notifier : notifiers) {
            if (!notifier || !notifier->watchedObject())
                continue;
            Object *watched = notifier->watchedObject();
            if (!world->alive.contains(watched))
                world->problem(QStringLiteral("a notifier watches a destroyed node"));
            else if (!dataOf(watched)->notifiers.contains(notifier.get()))
                world->problem(QStringLiteral("a notifier watches a node that does not list it"));
        }
        for (Object *&slot : nodeSlots) {
            if (slot && !world->alive.contains(slot))
                slot = nullptr;
        }
    }

    void destroyEverything()
    {
        // Roots first; each takes its subtree along.
        for (;;) {
            Object *root = nullptr;
            for (Object *object : aliveNodes()) {
                if (listers(object).isEmpty()) {
                    root = object;
                    break;
                }
            }
            if (!root)
                break;
            world->died.clear();
            const QSet<Object *> doomed = subtree(root);
            releaseStaleParents(doomed);
            delete root;
            if (world->died != doomed) {
                world->problem(QStringLiteral("destroying a root took %1 nodes, %2 expected")
                                       .arg(world->died.size())
                                       .arg(doomed.size()));
                break;
            }
        }
    }

    void dropNotifiers()
    {
        for (auto &notifier : notifiers)
            notifier.reset(); // detaches from its node
    }

    std::array<Object *, NodeSlots> nodeSlots;
    std::array<std::unique_ptr<Notifier>, NotifierSlots> notifiers;
    QSet<Object *> expected;
    int nextNumber = 0;
};

} // namespace

QString objectTree(const QByteArray &input)
{
    World state;
    world = &state;
    QString result;
    {
        Run run;
        result = run.execute(input);
    }
    if (!state.alive.isEmpty() && result.isEmpty())
        result = QStringLiteral("nodes left alive");
    world = nullptr;
    return result;
}

} // namespace FuzzHarness
