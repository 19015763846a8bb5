// SPDX-License-Identifier: BSD-3-Clause
#ifndef ES_FUZZ_HARNESS_H
#define ES_FUZZ_HARNESS_H

// The bodies of the fuzz targets. Each takes one input and returns an empty
// string when every check held, else a description of what broke. The libFuzzer
// entry points abort on a non-empty result; the regression test replays kept
// inputs through the same functions in the normal build.

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace FuzzHarness {

// META.INF reader on a temporary file.
QString metaData(const QByteArray &input);
// Version key and checkCompatible; the input is up to four lines: needed version,
// provider version, provider compatVersion, provider symbolic name.
QString version(const QByteArray &input);
// extension.xml through the parse task, run synchronously on a temporary file.
QString extensionFile(const QByteArray &input);
// A byte-coded sequence of Object tree operations.
QString objectTree(const QByteArray &input);

// A file of this process's temporary directory holding input.
QString writeTemporary(const QString &name, const QByteArray &input);

} // namespace FuzzHarness

#endif // ES_FUZZ_HARNESS_H
