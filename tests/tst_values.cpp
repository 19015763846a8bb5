#include <QtTest>

class tst_placeholder_values : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_placeholder_values)
#include "tst_values.moc"
