// SPDX-License-Identifier: BSD-3-Clause
#include "outsideactivator.h"

void OutsideActivator::start(ExtensionSystem::PluginContext *) { }
void OutsideActivator::stop(ExtensionSystem::PluginContext *) { }
