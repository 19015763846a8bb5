// SPDX-License-Identifier: BSD-3-Clause
#ifndef EXTENSIONSYSTEM_GLOBAL_H
#define EXTENSIONSYSTEM_GLOBAL_H

#include <QtCore/qglobal.h>

/*!
    \file extensionsystem_global.h
    \brief The export macros of the ExtensionSystem library and its d-pointer
    helpers.
*/

/*!
    \def EXTENSIONSYSTEM_EXPORT
    Marks a class or variable as part of the library's exported interface:
    Q_DECL_EXPORT while the library itself is built (EXTENSIONSYSTEM_LIBRARY
    defined), Q_DECL_IMPORT for everyone who uses it, such as hosts and plug-ins.
*/

/*!
    \def EXTENSIONSYSTEM_AUTOTEST_EXPORT
    Marks an internal class that the library's autotests use: exported like
    EXTENSIONSYSTEM_EXPORT when EXTENSIONSYSTEM_AUTOTEST is defined, empty
    otherwise. Classes marked with it are not part of the API.
*/

#if defined(EXTENSIONSYSTEM_LIBRARY)
#    define EXTENSIONSYSTEM_EXPORT Q_DECL_EXPORT
#else
#    define EXTENSIONSYSTEM_EXPORT Q_DECL_IMPORT
#endif

// Internal classes are compiled visible, for the test copy of the library; the
// installed library's version script hides them again.
#if defined(EXTENSIONSYSTEM_AUTOTEST)
#    define EXTENSIONSYSTEM_AUTOTEST_EXPORT EXTENSIONSYSTEM_EXPORT
#else
#    define EXTENSIONSYSTEM_AUTOTEST_EXPORT
#endif

/*!
    Q_DECLARE_PRIVATE for a public class \a Class whose private class, named
    \a Class with the suffix \c Private, lives in ExtensionSystem::Internal:
    declares d_func() and makes the private class a friend. For use inside the
    library's classes.
*/
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

/*!
    Q_DECLARE_PUBLIC for a private class in ExtensionSystem::Internal whose public
    class is ExtensionSystem::\a Class: declares q_func() and makes the public
    class a friend. For use inside the library.
*/
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
