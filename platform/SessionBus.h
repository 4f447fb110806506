// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane
{

/** Whether a session bus runs. Without one, asking for it could start a bus of our own. */
bool isSessionBusThere();

} // namespace glimmerpane
