// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of processes. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_priority(char *args[]);
void Cmd_search(char *args[]);
void Cmd_fork(char *args[]);
void Cmd_exec(char *args[]);
void Cmd_execpri(char *args[]);
void Cmd_execute_as(char *args[]);
void Cmd_pplano(char *args[]);
void Cmd_pplanopri(char *args[]);
void Cmd_splano(char *args[]);
void Cmd_splanopri(char *args[]);
void Cmd_pplanoas(char *args[]);
void Cmd_splanoas(char *args[]);
void Cmd_listjobs(char *args[]);
void Cmd_deljobs(char *args[]);
void Cmd_job(char *args[]);
void Cmd_pipe(char *args[]);
void Cmd_backpipe(char *args[]);
