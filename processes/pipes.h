// SPDX-License-Identifier: MIT

#pragma once

/// Runs two programs (execution lines), the output of the first joined to the input of the second, and waits
/// for both, or records them in LP when `segundoPlano` is not 0. Returns 0, or -1 when there is no pipe
/// (nothing is printed) or a process cannot be created (which is told; what could be started is waited for or
/// recorded as usual).
int HacerPipe(char *primero[], char *segundo[], int segundoPlano);
