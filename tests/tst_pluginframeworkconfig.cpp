#include <QtTest>

class tst_placeholder_pluginframeworkconfig : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_placeholder_pluginframeworkconfig)
#include "tst_pluginframeworkconfig.moc"
