// SPDX-License-Identifier: BSD-3-Clause
// A shared library that is not a Qt plug-in at all.
extern "C" int es_not_a_qt_plugin()
{
    return 42;
}
