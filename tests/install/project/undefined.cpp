// SPDX-License-Identifier: BSD-3-Clause
// Calls a function that no library defines.
extern "C" int es_outside_undefined();

extern "C" int es_outside_uses_undefined()
{
    return es_outside_undefined();
}
