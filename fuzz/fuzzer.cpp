// SPDX-License-Identifier: BSD-3-Clause
// libFuzzer entry point; ES_FUZZ_TARGET names the harness function of this target.

#include "harness.h"

#include <QtCore/QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void discardMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

QCoreApplication *application = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The parse task asks for the application's directory; the log lines of the
    // library would only slow the run down.
    static int count = 1;
    static char *arguments[] = {(*argv)[0], nullptr};
    Q_UNUSED(argc)
    qInstallMessageHandler(discardMessage);
    application = new QCoreApplication(count, arguments);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const QString failure = FuzzHarness::ES_FUZZ_TARGET(input);
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "check failed: %s\n", failure.toLocal8Bit().constData());
        std::abort();
    }
    return 0;
}
