// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of memory. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_recurse(char *args[]);
void Cmd_i_o(char *args[]);
void Cmd_readfile(char *args[]);
void Cmd_writefile(char *args[]);
void Cmd_memdump(char *args[]);
void Cmd_memfill(char *args[]);
void Cmd_deallocate(char *args[]);
void Cmd_allocate(char *args[]);
void Cmd_malloc(char *args[]);
void Cmd_mmap(char *args[]);
void Cmd_shared(char *args[]);
void Cmd_createshared(char *args[]);
void Cmd_memshared(char *args[]);
void Cmd_memdeshared(char *args[]);
void Cmd_memmalloc(char *args[]);
void Cmd_memdemalloc(char *args[]);
void Cmd_memmmap(char *args[]);
void Cmd_memdemmap(char *args[]);
void Cmd_free(char *args[]);
void Cmd_delkey(char *args[]);
void Cmd_memory(char *args[]);
void Cmd_memcopy(char *args[]);
void Cmd_stringcopy(char *args[]);
