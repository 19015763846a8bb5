#include <QtTest>

class tst_placeholder_object : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_placeholder_object)
#include "tst_object.moc"
