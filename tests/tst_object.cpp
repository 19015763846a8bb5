// SPDX-License-Identifier: BSD-3-Clause
#include <QtTest>

#include <objecttree/iobjectnotifier.h>
#include <objecttree/object.h>

#include <memory>
#include <vector>

using namespace ExtensionSystem;

using Event = QHash<QString, QVariant>;
using Objects = QList<Object *>;

namespace {

// Calls seen by nodes and notifiers, in order, as "who:what(args)".
QStringList calls;
// Names by address, kept after destruction so that late calls still read well.
QHash<const Object *, QString> names;
QStringList deaths;

QString nameOf(const Object *object)
{
    return object ? names.value(object, QStringLiteral("?")) : QStringLiteral("null");
}

void record(const QString &who, const char *what, const QStringList &args)
{
    calls << QStringLiteral("%1:%2(%3)").arg(who, QLatin1String(what), args.join(QLatin1Char(',')));
}

// The calls recorded since the last look, space separated.
QString taken()
{
    const QString result = calls.join(QLatin1Char(' '));
    calls.clear();
    return result;
}

QString text(const QVariant &value)
{
    return value.isValid() ? value.toString() : QStringLiteral("invalid");
}

class Node : public Object
{
public:
    explicit Node(const QString &name, Object *parent = nullptr)
        : Object(named(this, name, parent))
    { }
    ~Node() override { deaths << nameOf(this); }

    void attributeChanged(const QString &key, const QVariant &value) override
    {
        record(nameOf(this), "attributeChanged", {key, text(value)});
    }
    void aboutDestory(Object *object) override { record(nameOf(this), "aboutDestory", {nameOf(object)}); }
    void childAdded(Object *child) override { record(nameOf(this), "childAdded", {nameOf(child)}); }
    void aboutRemoveChild(Object *child) override { record(nameOf(this), "aboutRemoveChild", {nameOf(child)}); }
    bool handleEvent(const Event &event, Object *source) override
    {
        record(nameOf(this), "handleEvent", {event.value("id").toString(), nameOf(source)});
        return Object::handleEvent(event, source);
    }

    bool raise(const QString &id) { return handleEvent({{"id", id}}, this); }

private:
    // Names the node before the base constructor tells the parent about it.
    static Object *named(Object *self, const QString &name, Object *parent)
    {
        names.insert(self, name);
        return parent;
    }
};

class Recorder : public IObjectNotifier
{
public:
    explicit Recorder(const QString &name)
        : name(name)
    { }

    void parentChanged(Object *oldParent, Object *newParent) override
    {
        record(name, "parentChanged", {nameOf(oldParent), nameOf(newParent)});
    }
    void attributeChanged(const QString &key, const QVariant &value) override
    {
        record(name, "attributeChanged", {key, text(value)});
        if (detachOnChange)
            object->unsetObjectNotifier(this);
    }
    void dataChanged(int role, const QVariant &value) override
    {
        record(name, "dataChanged", {QString::number(role), text(value)});
    }
    void childAdded(Object *child) override { record(name, "childAdded", {nameOf(child)}); }
    void aboutRemoveChild(Object *child) override { record(name, "aboutRemoveChild", {nameOf(child)}); }
    void aboutDestory(Object *object) override
    {
        record(name, "aboutDestory", {nameOf(object)});
        if (deleteOnDestory)
            delete this;
    }
    bool event(const Event &event) override
    {
        record(name, "event", {event.value("id").toString()});
        return true;
    }

    QString name;
    bool detachOnChange = false;
    bool deleteOnDestory = false;
};

} // namespace

class tst_Object : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void setAttribute_data();
    void setAttribute();
    void dataRoles();
    void find();
    void addAndInsert();
    void takeAndSetParent();
    void removeChild();
    void pendingEvents();
    void destruction();
    void notifiers();
    void notifiersChangedDuringAPass();
};

void tst_Object::init()
{
    calls.clear();
    names.clear();
    deaths.clear();
}

// Data tables keep their hand-made alignment.
// clang-format off
void tst_Object::setAttribute_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("key with a role") << "a" << QVariant(2) << true
        << "obj:attributeChanged(a,2) n1:attributeChanged(a,2) n1:dataChanged(1,2)"
           " n2:attributeChanged(a,2) n2:dataChanged(1,2)";
    QTest::newRow("new key with a role") << "b" << QVariant("y") << true
        << "obj:attributeChanged(b,y) n1:attributeChanged(b,y) n1:dataChanged(2,y)"
           " n2:attributeChanged(b,y) n2:dataChanged(2,y)";
    QTest::newRow("key without a role") << "c" << QVariant("z") << true
        << "obj:attributeChanged(c,z) n1:attributeChanged(c,z) n2:attributeChanged(c,z)";
    QTest::newRow("equal value") << "a" << QVariant(1) << false << "";
    QTest::newRow("new key, invalid value") << "d" << QVariant() << true
        << "obj:attributeChanged(d,invalid) n1:attributeChanged(d,invalid) n2:attributeChanged(d,invalid)";
}
// clang-format on

void tst_Object::setAttribute()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, changed);
    QFETCH(QString, expected);

    Node obj("obj");
    Recorder n1("n1"), n2("n2");
    obj.setObjectNotifier(&n1);
    obj.setObjectNotifier(&n2);
    // Role 5 names "a" too; the lowest role is the one reported.
    obj.setDataRoles({{1, "a"}, {2, "b"}, {5, "a"}}, true);
    QVERIFY(obj.setAttributeData({{"a", 1}, {"c", "x"}}));
    QCOMPARE(taken(), QString());

    QCOMPARE(obj.setAttribute(key, value), changed);
    QCOMPARE(taken(), expected);
    QVERIFY(obj.attributeContains(key));
    QCOMPARE(obj.attribute(key), value);
}

void tst_Object::dataRoles()
{
    Node obj("obj");
    QVERIFY(obj.setDataRoles({{1, "a"}, {2, "a"}, {3, "b"}, {4, ""}}, true));
    QCOMPARE(obj.attributeRole("a"), 1);
    QCOMPARE(obj.attributeRole("zz"), -1);
    QCOMPARE(obj.roleName(3), QString("b"));

    QVERIFY(obj.setData(3, 7));
    QCOMPARE(obj.attribute("b"), QVariant(7));
    QCOMPARE(obj.data(3), QVariant(7));
    QVERIFY(!obj.data(1).isValid());
    // Unmapped and empty-named roles store nothing.
    QVERIFY(!obj.setData(9, 1));
    QVERIFY(!obj.setData(4, 1));
    QCOMPARE(obj.attributes(), QStringList{"b"});

    QVERIFY(obj.setDataRoles({{2, "c"}, {6, "d"}}, false));
    const QMap<int, QString> merged{{1, "a"}, {2, "c"}, {3, "b"}, {4, ""}, {6, "d"}};
    QCOMPARE(obj.dataRoles(), merged);
    QVERIFY(!obj.setDataRoles({}, false));
    QCOMPARE(obj.dataRoles(), merged);
    QVERIFY(!obj.setDataRoles({}, true));
    QVERIFY(obj.dataRoles().isEmpty());

    // cloneData replaces attributes and roles, and leaves the tree and notifiers alone.
    Node other("other");
    other.setDataRoles({{1, "k"}}, true);
    other.setAttribute("k", "v");
    Node *child = new Node("child", &obj);
    Recorder n("n");
    obj.setObjectNotifier(&n);
    taken();
    QVERIFY(!obj.cloneData(&obj));
    QVERIFY(obj.cloneData(&other));
    QCOMPARE(obj.attributeData(), other.attributeData());
    QCOMPARE(obj.dataRoles(), other.dataRoles());
    QCOMPARE(obj.children(), Objects{child});
    QCOMPARE(n.watchedObject(), &obj);
    QCOMPARE(taken(), QString());
}

void tst_Object::find()
{
    Node root("root");
    Node *c1 = new Node("c1", &root);
    Node *g1 = new Node("g1", c1);
    Node *c2 = new Node("c2", &root);
    Node *c3 = new Node("c3", &root);
    root.setAttribute("a", 1);
    c1->setAttribute("a", 2);
    g1->setAttribute("a", 3);
    c2->setAttribute("a", 3);
    c3->setAttribute("a", 1);

    QCOMPARE(root.find("a", 1), &root);
    QCOMPARE(root.find("a", 3), g1);
    QCOMPARE(root.find("a", 4), nullptr);
    // A missing key is not an invalid value.
    QCOMPARE(root.find("zz", QVariant()), nullptr);

    // The role is resolved once, on the node where the search starts.
    root.setDataRoles({{7, "a"}}, true);
    QCOMPARE(root.find(7, 2), c1);
    QCOMPARE(root.find(8, 1), nullptr);
}

void tst_Object::addAndInsert()
{
    Recorder pn("pn"), an("an");
    Node *parent = new Node("p");
    parent->setObjectNotifier(&pn);
    Node *a = new Node("a");
    a->setObjectNotifier(&an);

    QVERIFY(parent->addChild(a));
    QCOMPARE(taken(), QString("an:parentChanged(p,p) p:childAdded(a) pn:childAdded(a)"));
    QCOMPARE(a->parent(), parent);
    QVERIFY(!parent->addChild(a));
    QVERIFY(!parent->addChild(parent));
    QVERIFY(!parent->addChild(nullptr));
    QVERIFY(!parent->insertChild(0, parent));
    QVERIFY(!parent->insertChild(0, nullptr));

    Node *b = new Node("b", parent);
    Node *c = new Node("c");
    Node *d = new Node("d");
    QVERIFY(parent->insertChild(99, c));
    QVERIFY(parent->insertChild(-3, d));
    QVERIFY(parent->insertChild(1, c));
    QCOMPARE(parent->children(), Objects({d, c, a, b, c}));
    QCOMPARE(parent->childIndexOf(c), 1);
    QCOMPARE(parent->childAt(5), nullptr);

    // Adding to another parent takes the child out of the first one.
    Node *other = new Node("other");
    taken();
    QVERIFY(other->addChild(a));
    QCOMPARE(taken(), QString("pn:aboutRemoveChild(a) p:aboutRemoveChild(a)"
                              " an:parentChanged(other,other) other:childAdded(a)"));
    QCOMPARE(parent->children(), Objects({d, c, b, c}));

    // The child listed twice is deleted once.
    delete parent;
    QCOMPARE(deaths, QStringList({"p", "d", "c", "b"}));
    delete other;
    QCOMPARE(an.watchedObject(), nullptr);
}

void tst_Object::takeAndSetParent()
{
    Recorder pn("pn"), an("an");
    Node *parent = new Node("p");
    parent->setObjectNotifier(&pn);
    Node *a = new Node("a", parent);
    Node *b = new Node("b", parent);
    a->setObjectNotifier(&an);
    taken();

    QCOMPARE(parent->takeChild(2), nullptr);
    QCOMPARE(parent->takeChild(0), a);
    QCOMPARE(taken(), QString("pn:aboutRemoveChild(a) p:aboutRemoveChild(a)"));
    QCOMPARE(parent->children(), Objects{b});
    QCOMPARE(a->parent(), parent);

    // The stale parent no longer lists it, so moving on tells it nothing; set directly,
    // the new parent does not list it either, but its events climb there.
    Node q("q");
    a->setParent(&q);
    a->setParent(&q);
    a->setParent(a);
    QCOMPARE(taken(), QString("an:parentChanged(q,q)"));
    QCOMPARE(a->parent(), &q);
    QCOMPARE(q.childCount(), 0);
    QCOMPARE(parent->childCount(), 1);
    QVERIFY(a->raise("e"));
    QCOMPARE(taken(), QString("a:handleEvent(e,a) an:event(e) q:handleEvent(e,a)"));

    // Neither q nor the old parent lists it: its end is told to its notifier only.
    delete a;
    QCOMPARE(taken(), QString("an:aboutDestory(a)"));
    delete parent;
    QCOMPARE(deaths, QStringList({"a", "p", "b"}));
}

void tst_Object::removeChild()
{
    Recorder pn("pn"), an("an");
    Node parent("p");
    parent.setObjectNotifier(&pn);
    Node *a = new Node("a", &parent);
    Node *b = new Node("b", &parent);
    new Node("c", &parent);
    a->setObjectNotifier(&an);
    taken();

    // By pointer a regular child is detached, told of twice, and survives.
    QVERIFY(!parent.removeChild(a));
    QCOMPARE(taken(), QString("pn:aboutRemoveChild(a) p:aboutRemoveChild(a)"
                              " pn:aboutRemoveChild(a) p:aboutRemoveChild(a) an:parentChanged(null,null)"));
    QVERIFY(deaths.isEmpty());
    QCOMPARE(a->parent(), nullptr);
    QCOMPARE(parent.childCount(), 2);
    QVERIFY(!parent.removeChild(a));
    QVERIFY(!parent.removeChild(&parent));
    delete a;
    taken();
    deaths.clear();

    // By index the child is deleted, and only the notifiers hear of it.
    QVERIFY(!parent.removeChild(2));
    QVERIFY(parent.removeChild(1));
    QCOMPARE(taken(), QString("pn:aboutRemoveChild(c)"));
    QCOMPARE(deaths, QStringList{"c"});
    QCOMPARE(parent.children(), Objects{b});

    // Listed twice, detaching takes one entry and the other goes with the deleted child.
    QVERIFY(parent.insertChild(0, b));
    QVERIFY(parent.removeChild(b));
    QCOMPARE(deaths, QStringList({"c", "b"}));
    QCOMPARE(parent.childCount(), 0);

    // Destroyed while listed twice, a child leaves no entry behind.
    Node *d = new Node("d", &parent);
    parent.insertChild(0, d);
    delete d;
    QCOMPARE(parent.childCount(), 0);
}

void tst_Object::pendingEvents()
{
    Recorder rn("rn");
    Node *root = new Node("root");
    root->setObjectNotifier(&rn);
    Node *a = new Node("a", root);
    Node *b = new Node("b", root);
    taken();

    // Events wait at a root without a parent.
    QVERIFY(a->raise("e1"));
    QCOMPARE(taken(), QString("a:handleEvent(e1,a) root:handleEvent(e1,a) rn:event(e1)"));
    QVERIFY(!root->raise("e2"));
    QVERIFY(b->raise("e3"));
    QVERIFY(a->raise("e4"));

    // Taking a child drops its waiting events (e1, e4) and keeps the others in order.
    QCOMPARE(root->takeChild(0), a);
    delete a;

    Node *top = new Node("top");
    taken();
    QVERIFY(top->addChild(root));
    QCOMPARE(taken(), QString("rn:parentChanged(top,top) top:handleEvent(e2,root) top:handleEvent(e3,b)"
                              " top:childAdded(root)"));
    // Climbing two levels, the event keeps the node it started from as its source.
    QVERIFY(b->raise("e5"));
    QCOMPARE(taken(), QString("b:handleEvent(e5,b) root:handleEvent(e5,b) rn:event(e5) top:handleEvent(e5,b)"));

    // Handed on once: a second parent gets nothing.
    Node *other = new Node("other");
    QVERIFY(other->addChild(root));
    QCOMPARE(taken(), QString("top:aboutRemoveChild(root) rn:parentChanged(other,other) other:childAdded(root)"));

    // Top kept e2, e3 and e5 for a parent of its own; taking root dropped e2, its source.
    Node *outer = new Node("outer");
    outer->addChild(top);
    QCOMPARE(taken(), QString("outer:handleEvent(e3,b) outer:handleEvent(e5,b) outer:childAdded(top)"));

    delete outer;
    delete other;
}

void tst_Object::destruction()
{
    Recorder rn("rn"), keep("keep");
    Node *root = new Node("root");
    root->setObjectNotifier(&rn);
    Node *c1 = new Node("c1", root);
    new Node("g1", c1);
    new Node("c2", root);
    Node *c3 = new Node("c3", root);
    taken();

    delete c3;
    QCOMPARE(deaths, QStringList{"c3"});
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(taken(), QString("rn:aboutRemoveChild(c3) root:aboutRemoveChild(c3)"
                              " rn:aboutRemoveChild(c3) root:aboutRemoveChild(c3)"));

    // Children go in list order, each with its own subtree; only the notifiers hear
    // aboutDestory, since the node's override is gone by then.
    deaths.clear();
    delete root;
    QCOMPARE(deaths, QStringList({"root", "c1", "g1", "c2"}));
    QCOMPARE(taken(), QString("rn:aboutDestory(root)"));
    QCOMPARE(rn.watchedObject(), nullptr);

    // A notifier may delete itself when told; the next one is still told and detached.
    Node *n = new Node("n");
    Recorder *self = new Recorder("self");
    self->deleteOnDestory = true;
    n->setObjectNotifier(self);
    n->setObjectNotifier(&keep);
    delete n;
    QCOMPARE(taken(), QString("self:aboutDestory(n) keep:aboutDestory(n)"));
    QCOMPARE(keep.watchedObject(), nullptr);
}

void tst_Object::notifiers()
{
    Node a("a"), b("b");
    Recorder n("n"), m("m");
    a.setObjectNotifier(&n);
    a.setObjectNotifier(&n);
    a.setObjectNotifier(&m);
    a.setAttribute("k", 1);
    QCOMPARE(taken(), QString("a:attributeChanged(k,1) n:attributeChanged(k,1) m:attributeChanged(k,1)"));

    b.setObjectNotifier(&n);
    QCOMPARE(n.watchedObject(), &b);
    a.setAttribute("k", 2);
    b.setAttribute("k", 2);
    QCOMPARE(taken(), QString("a:attributeChanged(k,2) m:attributeChanged(k,2)"
                              " b:attributeChanged(k,2) n:attributeChanged(k,2)"));

    b.unsetObjectNotifier(&n);
    QCOMPARE(n.watchedObject(), nullptr);
    a.unsetObjectNotifier(&n);

    // One that detaches during a pass does not keep the others from being told.
    a.setObjectNotifier(&n);
    m.detachOnChange = true;
    a.setAttribute("k", 3);
    QCOMPARE(taken(), QString("a:attributeChanged(k,3) m:attributeChanged(k,3) n:attributeChanged(k,3)"));
    QCOMPARE(m.watchedObject(), nullptr);

    // A notifier that is destroyed detaches itself.
    {
        Recorder gone("gone");
        a.setObjectNotifier(&gone);
    }
    a.setAttribute("k", 4);
    QCOMPARE(taken(), QString("a:attributeChanged(k,4) n:attributeChanged(k,4)"));
}

void tst_Object::notifiersChangedDuringAPass()
{
    // A pass runs over the notifiers as they were when it began: one detached by
    // another during the pass is still told this time, the rest once each, and
    // ones attached during it wait for the next pass.
    Node a("a");
    Recorder x("x"), y("y");
    std::vector<std::unique_ptr<Recorder>> late;
    struct Changer : IObjectNotifier
    {
        Object *target = nullptr;
        IObjectNotifier *detach = nullptr;
        std::vector<std::unique_ptr<Recorder>> *late = nullptr;
        void attributeChanged(const QString &, const QVariant &) override
        {
            record(QStringLiteral("changer"), "attributeChanged", {});
            target->unsetObjectNotifier(detach);
            for (int i = 0; i < 64; ++i) {
                late->emplace_back(new Recorder(QStringLiteral("late%1").arg(i)));
                target->setObjectNotifier(late->back().get());
            }
        }
    } changer;
    changer.target = &a;
    changer.detach = &x;
    changer.late = &late;
    a.setObjectNotifier(&changer);
    a.setObjectNotifier(&x);
    a.setObjectNotifier(&y);
    a.setAttribute("k", 1);
    QCOMPARE(taken(), QString("a:attributeChanged(k,1) changer:attributeChanged() x:attributeChanged(k,1)"
                              " y:attributeChanged(k,1)"));
    QCOMPARE(x.watchedObject(), nullptr);
    changer.detach = nullptr;
    a.unsetObjectNotifier(&changer);
    a.setAttribute("k", 2);
    const QString told = taken();
    QVERIFY2(told.startsWith("a:attributeChanged(k,2) y:attributeChanged(k,2) late0:attributeChanged(k,2)")
                     && told.contains("late63:attributeChanged(k,2)") && !told.contains("x:"),
             qPrintable(told));
}

QTEST_MAIN(tst_Object)
#include "tst_object.moc"
