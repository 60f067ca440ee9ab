// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of files and descriptors. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_open(char *args[]);
void Cmd_close(char *args[]);
void Cmd_listopen(char *args[]);
void Cmd_dup(char *args[]);
void Cmd_dup2(char *args[]);
void Cmd_read(char *args[]);
void Cmd_write(char *args[]);
void Cmd_lseek(char *args[]);
void Cmd_readstr(char *args[]);
void Cmd_writestr(char *args[]);
void Cmd_hardlink(char *args[]);
void Cmd_symlink(char *args[]);
void Cmd_link(char *args[]);
void Cmd_create(char *args[]);
void Cmd_makefile(char *args[]);
void Cmd_makedir(char *args[]);
void Cmd_delete(char *args[]);
void Cmd_deltree(char *args[]);
void Cmd_stat(char *args[]);
void Cmd_list(char *args[]);
void Cmd_listdir(char *args[]);
void Cmd_listrec(char *args[]);
void Cmd_listrev(char *args[]);
void Cmd_redin(char *args[]);
void Cmd_redout(char *args[]);
void Cmd_rederr(char *args[]);
void Cmd_initredir(char *args[]);
void Cmd_clearredir(char *args[]);
