// SPDX-License-Identifier: BSD-3-Clause
#include "testactivator.h"

// Links, but cannot be loaded: the symbol is defined nowhere.
extern "C" int es_symbol_that_does_not_exist();

extern "C" int es_use_missing_symbol()
{
    return es_symbol_that_does_not_exist();
}
