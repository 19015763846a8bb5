#include <QtTest>

class tst_placeholder_pluginmetadata : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_placeholder_pluginmetadata)
#include "tst_pluginmetadata.moc"
