// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of the shell core. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_version(char *args[]);
void Cmd_exit(char *args[]);
void Cmd_fecha(char *args[]);
void Cmd_date(char *args[]);
void Cmd_time(char *args[]);
void Cmd_pid(char *args[]);
void Cmd_ppid(char *args[]);
void Cmd_authors(char *args[]);
void Cmd_hist(char *args[]);
void Cmd_command(char *args[]);
void Cmd_prompt(char *args[]);
void Cmd_chdir(char *args[]);
void Cmd_chroot(char *args[]);
void Cmd_infosys(char *args[]);
void Cmd_pwd(char *args[]);
void Cmd_help(char *args[]);
void Cmd_where(char *args[]);
void Cmd_limits(char *args[]);
void Cmd_abbrev(char *args[]);
void Cmd_checkalias(char *args[]);
