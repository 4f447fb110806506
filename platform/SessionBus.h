// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane
{

/** Whether a session bus is running. Connecting without one could start a new bus. */
bool isSessionBusThere();

} // namespace glimmerpane
