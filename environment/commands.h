// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of the process environment. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_showenv(char *args[]);
void Cmd_showvar(char *args[]);
void Cmd_changevar(char *args[]);
void Cmd_subsvar(char *args[]);
void Cmd_changevarWrong(char *args[]);
void Cmd_getuid(char *args[]);
void Cmd_setuid(char *args[]);
void Cmd_uid(char *args[]);
