// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_GLOBAL_H
#define EXTENSIONSYSTEM_GLOBAL_H

#include <QtCore/qglobal.h>

#if defined(EXTENSIONSYSTEM_LIBRARY)
#    define EXTENSIONSYSTEM_EXPORT Q_DECL_EXPORT
#else
#    define EXTENSIONSYSTEM_EXPORT Q_DECL_IMPORT
#endif

// Internal classes are visible to the autotests of a tree built with them, and
// hidden in every other build.
#if defined(EXTENSIONSYSTEM_AUTOTEST)
#    define EXTENSIONSYSTEM_AUTOTEST_EXPORT EXTENSIONSYSTEM_EXPORT
#else
#    define EXTENSIONSYSTEM_AUTOTEST_EXPORT
#endif

// Q_DECLARE_PRIVATE for a public class whose private lives in ExtensionSystem::Internal.
#define ES_DECLARE_PRIVATE(Class)                                                                                      \
    inline Internal::Class##Private *d_func()                                                                          \
    {                                                                                                                  \
        return reinterpret_cast<Internal::Class##Private *>(qGetPtrHelper(d_ptr));                                     \
    }                                                                                                                  \
    inline const Internal::Class##Private *d_func() const                                                              \
    {                                                                                                                  \
        return reinterpret_cast<const Internal::Class##Private *>(qGetPtrHelper(d_ptr));                               \
    }                                                                                                                  \
    friend class Internal::Class##Private;

// Q_DECLARE_PUBLIC for a private class in ExtensionSystem::Internal.
#define ES_DECLARE_PUBLIC(Class)                                                                                       \
    inline ExtensionSystem::Class *q_func()                                                                            \
    {                                                                                                                  \
        return static_cast<ExtensionSystem::Class *>(q_ptr);                                                           \
    }                                                                                                                  \
    inline const ExtensionSystem::Class *q_func() const                                                                \
    {                                                                                                                  \
        return static_cast<const ExtensionSystem::Class *>(q_ptr);                                                     \
    }                                                                                                                  \
    friend class ExtensionSystem::Class;

#endif // EXTENSIONSYSTEM_GLOBAL_H
