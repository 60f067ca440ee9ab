// SPDX-License-Identifier: MIT

#pragma once

/// Whether the system runs systemd: "/run/systemd/system" exists, or cannot be told not to.
int CheckForSystemd();

/// Shows the warning about it on descriptor 1, unbuffered, with its 18 seconds of pauses.
void AvisoPorSystemd();
