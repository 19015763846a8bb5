// SPDX-License-Identifier: BSD-3-Clause
#ifndef ES_TESTSUPPORT_H
#define ES_TESTSUPPORT_H

// Shared by the tests that run the framework against real plug-in libraries:
// each test executable owns the plugins/ and config/ beside it.

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QStringList>
#include <QtCore/QThreadPool>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtTest/QTest>

#include <framework/pluginframework.h>
#include <framework/pluginframework_p.h>
#include <core/pluginframeworkcontext.h>

#include "plugins/src/pluginlog.h"

namespace TestSupport {

inline QString appDir()
{
    return QCoreApplication::applicationDirPath();
}

inline QString pluginsDir()
{
    return appDir() + QStringLiteral("/plugins");
}

inline QString configFile()
{
    const QString program =
            QCoreApplication::applicationFilePath().section(QLatin1Char('/'), -1, -1).section(QLatin1Char('.'), 0, 0);
    return appDir() + QStringLiteral("/config/") + program + QStringLiteral("/config.ini");
}

// Removes plugins/ and config/ so that every test case starts from nothing.
inline void resetApplicationDirectory()
{
    QDir(pluginsDir()).removeRecursively();
    QDir(appDir() + QStringLiteral("/config")).removeRecursively();
}

inline QString builtPlugin(const QString &name)
{
    return QStringLiteral(ES_TEST_PLUGIN_DIR "/%1/%1" ES_TEST_LIBRARY_SUFFIX).arg(name);
}

// Copies a built test plug-in into plugins/<directory>/ and returns its new path.
// A plug-in that cannot be copied means the build is incomplete: nothing that
// follows would mean anything, so the test program stops there.
inline QString deployPlugin(const QString &name, const QString &directory = QString())
{
    const QString dir = pluginsDir() + QLatin1Char('/') + (directory.isEmpty() ? name : directory);
    QDir().mkpath(dir);
    const QString target = dir + QLatin1Char('/') + name + QStringLiteral(ES_TEST_LIBRARY_SUFFIX);
    QFile::remove(target);
    if (!QFile::copy(builtPlugin(name), target))
        qFatal("cannot copy the test plug-in %s to %s", qPrintable(builtPlugin(name)), qPrintable(target));
    return target;
}

// Writes content to path, making its directory; false when that fails.
[[nodiscard]] inline bool writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

// Lets everything under way arrive: the pool's tasks end, then a sentinel
// posted behind all that they and the framework queued is delivered; a few
// times over, since a delivered event may queue another. A test that checks
// that nothing more arrives checks it after this, not after a pause.
[[nodiscard]] inline bool settle()
{
    for (int round = 0; round < 3; ++round) {
        QThreadPool::globalInstance()->waitForDone();
        bool delivered = false;
        QMetaObject::invokeMethod(
                qApp, [&delivered] { delivered = true; }, Qt::QueuedConnection);
        if (!QTest::qWaitFor([&delivered] { return delivered; }, 10000))
            return false;
    }
    return true;
}

// What the test plug-ins' activators recorded.
inline QStringList pluginLog()
{
    return qApp->property(ES_TEST_PLUGIN_LOG).toStringList();
}

inline void clearPluginLog()
{
    qApp->setProperty(ES_TEST_PLUGIN_LOG, QStringList());
}

// The framework's managers, which a host reaches only partly.
inline ExtensionSystem::Internal::PluginFrameworkContext *frameworkContext(ExtensionSystem::PluginFramework *framework)
{
    using ExtensionSystem::Internal::PluginFrameworkPrivate;
    return static_cast<PluginFrameworkPrivate *>(QObjectPrivate::get(framework))->context;
}

// A minimal compiled translation holding one message.
inline QByteArray makeTranslation(const QByteArray &context, const QByteArray &source, const QString &translation)
{
    auto be32 = [](QByteArray &bytes, quint32 value) {
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.append(char(value >> shift));
    };
    quint32 hash = 0;
    for (const char c : source) {
        hash = (hash << 4) + uchar(c);
        const quint32 high = hash & 0xf0000000;
        if (high)
            hash ^= high >> 24;
        hash &= ~high;
    }
    if (!hash)
        hash = 1;

    QByteArray message;
    message.append(char(3)); // translation, UTF-16 big endian
    be32(message, quint32(translation.size() * 2));
    for (const QChar c : translation) {
        message.append(char(c.unicode() >> 8));
        message.append(char(c.unicode() & 0xff));
    }
    message.append(char(6)); // source text
    be32(message, quint32(source.size()));
    message.append(source);
    message.append(char(7)); // context
    be32(message, quint32(context.size()));
    message.append(context);
    message.append(char(1)); // end

    static const uchar magic[16] = {0x3c, 0xb8, 0x64, 0x18, 0xca, 0xef, 0x9c, 0x95,
                                    0xcd, 0x21, 0x1c, 0xbf, 0x60, 0xa1, 0xbd, 0xdd};
    QByteArray qm(reinterpret_cast<const char *>(magic), 16);
    qm.append(char(0x42)); // hashes
    be32(qm, 8);
    be32(qm, hash);
    be32(qm, 0);
    qm.append(char(0x69)); // messages
    be32(qm, quint32(message.size()));
    qm.append(message);
    return qm;
}

} // namespace TestSupport

#endif // ES_TESTSUPPORT_H
