// SPDX-License-Identifier: MIT

#pragma once

/// Reads an execution line (processes/execution_line.h) and replaces the process with its program. `usuario`
/// (login of the effective user to become) and `prioridad` may be null; the line is searched for a priority
/// only when none is given. Returns only on failure: -1, with EFAULT (no program), E2BIG (too many
/// environment words), or the `errno` of the step that failed. What was changed before it (user, priority,
/// redirections) stays changed; the refusals of user, priority and files are told here. The caller has made
/// ready what the program inherits (Bifurcar or SincronizarES).
int exec(char *linea[], const char *usuario, const int *prioridad);

/// Creates a process that executes the line and waits for it, or records it in LP when the line carries "&"
/// or `segundoPlano` is not 0. Returns 0, or -1 when there was no process to be had, which is told.
int Proceso(char *linea[], int segundoPlano, const char *usuario, const int *prioridad);
